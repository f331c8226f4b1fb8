#include "MenuBar/StatusDot.h"

#include <QPainter>
#include <QPixmap>

namespace corvane::statusdot {

namespace {

constexpr int iconSide = 16; // that trays ask for and Qt's menus have room for
constexpr int sharpest = 3;  // the largest scale factor drawn

QPixmap picture(const SessionStatus& status, Look look, int box, int ratio) {
    QPixmap pixmap(QSize(box, box) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal dotSide = side;
    const qreal inset = (box - dotSide) / 2;
    paint(painter, QRectF(inset, inset, dotSide, dotSide), status, look);
    return pixmap;
}

} // namespace

QColor color(const SessionStatus& status, Look look) {
    if (status.isWaiting()) return Tokens::primary.color(look);
    return status.isDone() ? Tokens::secondary.color(look) : Tokens::runningDot(look);
}

void paint(QPainter& painter, QRectF dot, const SessionStatus& status, Look look) {
    painter.setPen(Qt::NoPen);
    if (look.isHighContrast() && status.isRunning()) {
        constexpr qreal ringWidth = 1;
        constexpr qreal inset = ringWidth / 2;
        dot.adjust(inset, inset, -inset, -inset);
        painter.setPen(QPen(Tokens::textSecondary(look), ringWidth));
    }
    painter.setBrush(color(status, look));
    painter.drawEllipse(dot);
}

QIcon icon(const SessionStatus& status, Look look) {
    QIcon icon;
    for (int ratio = 1; ratio <= sharpest; ++ratio)
        icon.addPixmap(picture(status, look, scaled(iconSide), ratio));
    return icon;
}

} // namespace corvane::statusdot
