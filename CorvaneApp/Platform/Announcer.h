#pragma once

#include <QString>

class QWidget;

namespace corvane {

/// Speaks to users of assistive technology. Main thread only.
class Announcer {
  public:
    Announcer() = default;
    Announcer(const Announcer&) = delete;
    Announcer& operator=(const Announcer&) = delete;
    virtual ~Announcer() = default;

    /// Has `text` read out once, at high priority. `banner` is the view that shows the same, already on its
    /// panel: where screen readers read notifications rather than free announcements, they are pointed to it.
    /// Nothing happens where nobody listens.
    virtual void announce(const QString& text, QWidget& banner) = 0;
};

} // namespace corvane
