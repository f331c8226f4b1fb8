#include "Platform/CardWindow.h"

namespace corvane::cardwindow {

// The window server blends every window and draws the shadows itself.

bool isBlended() {
    return true;
}

QMargins margins() {
    return {};
}

void paintShadow(QPainter& /*painter*/, const QWidget& /*window*/, const QPainterPath& /*outline*/,
                 QSize /*cardSize*/) {}

} // namespace corvane::cardwindow
