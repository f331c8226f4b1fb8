#pragma once

#include <QObject>
#include <xcb/xcb.h>

namespace corvane {

/// The compositing manager's effects on windows, tracked through X events, so that reading them costs no
/// round trip to the server. On other window systems, windows count as blended and nothing is blurred. Main
/// thread only.
class Compositing : public QObject {
    Q_OBJECT

  public:
    /// The application's instance, created on the first call.
    static Compositing& instance();

    /// The window of the compositing manager; XCB_WINDOW_NONE if none runs.
    [[nodiscard]] xcb_window_t manager() const { return manager_; }
    /// Whether windows are blended with what is below.
    [[nodiscard]] bool isBlended() const { return isBlended_; }
    /// Whether the compositing manager blurs what lies behind the regions that windows request.
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
