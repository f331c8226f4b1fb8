#pragma once

#include "Platform/Announcer.h"

namespace corvane {

/// Announces banners by their accessible role. A notification that begins to show is what Linux's screen
/// readers speak: its name, once. Qt sends that event (object:state-changed:showing, role notification) to
/// everybody who listens on the accessibility bus, at each show of a banner's view, the new view of a
/// refreshed banner included.
///
/// Nothing else is sent on purpose. An object:announcement event is not known to every screen reader, and one
/// that knows both would speak twice.
///
/// Silent, without a message, where there is no message bus or no accessibility bus; begins when one comes
/// up.
class LinuxAnnouncer : public Announcer {
  public:
    LinuxAnnouncer();

    /// Does nothing: the banner has been read when it was shown.
    void announce(const QString& /*text*/) override {}
};

} // namespace corvane
