#include "Platform/Linux/WindowShadow.h"

#include "Platform/Linux/Compositing.h"
#include "Platform/Linux/Shadow.h"
#include "Platform/Linux/X11.h"

#include <QPainter>
#include <QWidget>

namespace corvane {

bool LinuxWindowShadow::isBlended() const {
    return Compositing::instance().isBlended();
}

QMargins LinuxWindowShadow::margins() const {
    return isBlended() ? shadowMargins : QMargins();
}

bool LinuxWindowShadow::isBlurredBehind() const {
    return Compositing::instance().isBlurredBehind();
}

void LinuxWindowShadow::setBlurBehind(const QWidget& window, const QPainterPath& outline) {
    const WId id = window.internalWinId();
    if (id == 0) return;
    x11::setBlurRegion(static_cast<xcb_window_t>(id),
                       outline.isEmpty() ? QRegion() : inPixels(outline, window.devicePixelRatioF()));
    x11::flush();
}

void LinuxWindowShadow::paint(QPainter& painter, const QWidget& window, const QPainterPath& outline,
                              QSize cardSize) {
    const ColorScheme scheme = Tokens::scheme(window.palette());
    const qreal ratio = window.devicePixelRatioF();
    if (last_.image.isNull() || last_.cardSize != cardSize || last_.scheme != scheme || last_.ratio != ratio)
        last_ = {cardSize, scheme, ratio, cardShadow(outline, cardSize, scheme, ratio)};
    painter.drawImage(QPoint(), last_.image);
}

void LinuxWindowShadow::cut(QWidget& window, const QPainterPath& outline) {
    if (window.internalWinId() == 0) return;
    x11::setBoundingShape(static_cast<xcb_window_t>(window.internalWinId()),
                          isBlended() ? QRegion() : inPixels(outline, window.devicePixelRatioF()));
    x11::flush();
}

} // namespace corvane
