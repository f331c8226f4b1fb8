#pragma once

#include <QString>

namespace corvane {

/// Speaks to users of assistive technology. Main thread only.
class Announcer {
  public:
    Announcer() = default;
    Announcer(const Announcer&) = delete;
    Announcer& operator=(const Announcer&) = delete;
    virtual ~Announcer() = default;

    /// Announces `text`, the accessible name of a banner that has just been shown, once, at high priority.
    /// Does nothing where screen readers read banners by themselves, or where nobody listens.
    virtual void announce(const QString& text) = 0;
};

} // namespace corvane
