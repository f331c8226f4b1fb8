#pragma once

#include <QMargins>
#include <QPainterPath>
#include <QSize>

class QPainter;
class QWidget;

namespace corvane {

/// The shadow around a frameless window of the application whose content is a card. Main thread only.
class WindowShadow {
  public:
    WindowShadow() = default;
    WindowShadow(const WindowShadow&) = delete;
    WindowShadow& operator=(const WindowShadow&) = delete;
    virtual ~WindowShadow() = default;

    /// Whether the desktop blends windows with what is below them, so that a card can have round corners and
    /// a shadow. May change while running: query it each time a window is shown.
    [[nodiscard]] virtual bool isBlended() const = 0;

    /// The margins that the window must leave around the card, in device-independent pixels; null if the
    /// system draws the shadow or windows are not blended.
    [[nodiscard]] virtual QMargins margins() const = 0;

    /// Whether the desktop blurs what lies behind the regions that windows request. May change while running.
    [[nodiscard]] virtual bool isBlurredBehind() const = 0;

    /// Requests blur behind `outline`, in the coordinates of `window`, which must have been shown; an empty
    /// outline removes it. Does nothing where the desktop does not blur.
    virtual void setBlurBehind(const QWidget& window, const QPainterPath& outline) = 0;

    /// Paints the shadow of the card into those margins, if windows are blended. `outline` is the card's, in
    /// its own coordinates; the card is at `margins` in `window`.
    virtual void paint(QPainter& painter, const QWidget& window, const QPainterPath& outline,
                       QSize cardSize) = 0;

    /// Clips the window to `outline`, in the window's coordinates, where windows are not blended: unpainted
    /// parts would be black there. Removes the clip where they are blended. The window must already have its
    /// native window. Call it again whenever the window is resized or shown.
    virtual void cut(QWidget& window, const QPainterPath& outline) = 0;
};

} // namespace corvane
