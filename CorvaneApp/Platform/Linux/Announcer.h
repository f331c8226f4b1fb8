#pragma once

#include "Platform/Announcer.h"

namespace corvane {

/// Announces banners by their accessible role. When a notification is shown, Linux's screen readers speak its
/// name once. Qt sends that event (object:state-changed:showing, role notification) to all listeners on the
/// accessibility bus each time a banner's view is shown, the new view of a refreshed banner included.
///
/// Deliberately, nothing else is sent: not every screen reader knows the object:announcement event, and one
/// that knows both would speak twice.
///
/// Silent, without a message, while there is no session bus or no accessibility bus; starts working when one
/// appears.
class LinuxAnnouncer : public Announcer {
  public:
    LinuxAnnouncer();

    /// Does nothing: the banner was read when it was shown.
    void announce(const QString& /*text*/) override {}
};

} // namespace corvane
