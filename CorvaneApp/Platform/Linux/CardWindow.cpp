#include "Platform/CardWindow.h"

#include "Platform/Linux/Shadow.h"
#include "Platform/Linux/X11.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

namespace corvane::cardwindow {

namespace {

/// The shadow that was painted last: it takes a while to make, and a card keeps its size for long.
struct LastShadow {
    QSize cardSize;
    ColorScheme scheme{};
    qreal ratio = 0;
    QImage image;
};

} // namespace

bool isBlended() {
    return x11::isComposited();
}

QMargins margins() {
    return isBlended() ? shadowMargins : QMargins();
}

void paintShadow(QPainter& painter, const QWidget& window, const QPainterPath& outline, QSize cardSize) {
    static LastShadow last;
    const ColorScheme scheme = Tokens::scheme(window.palette());
    const qreal ratio = window.devicePixelRatioF();
    if (last.image.isNull() || last.cardSize != cardSize || last.scheme != scheme || last.ratio != ratio)
        last = {cardSize, scheme, ratio, cardShadow(outline, cardSize, scheme, ratio)};
    painter.drawImage(QPoint(), last.image);
}

} // namespace corvane::cardwindow
