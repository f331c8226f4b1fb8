#pragma once

#include <QObject>
#include <xcb/xcb.h>

namespace corvane {

/// What the compositing manager does with windows, followed by the X server's events: reading it costs no
/// round trip to the server. On another window system windows are blended and nothing is blurred. Main thread
/// only.
class Compositing : public QObject {
    Q_OBJECT

  public:
    /// The application's instance, created on the first call.
    static Compositing& instance();

    /// The window of the compositing manager; XCB_WINDOW_NONE if none runs.
    [[nodiscard]] xcb_window_t manager() const { return manager_; }
    /// Whether windows are blended with what is below.
    [[nodiscard]] bool isBlended() const { return isBlended_; }
    /// Whether the compositing manager blurs what lies behind the regions that windows ask for.
    [[nodiscard]] bool isBlurredBehind() const { return isBlurredBehind_; }

  Q_SIGNALS:
    /// Any of the above values has changed.
    void changed();

  private:
    explicit Compositing(QObject* parent);

    void follow();

    xcb_window_t manager_ = XCB_WINDOW_NONE;
    bool isBlended_ = true;
    bool isBlurredBehind_ = false;
};

} // namespace corvane
