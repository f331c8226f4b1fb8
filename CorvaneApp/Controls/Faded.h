#pragma once

#include <QPainter>
#include <QPixmap>

namespace corvane {

/// Paints what `content` paints within `bounds` as one layer at `opacity`, so that overlapping parts do not
/// show through one another. Crisp at the painter's scale.
template <typename Content>
void paintFaded(QPainter& painter, const QRectF& bounds, double opacity, Content content) {
    const QTransform toDevice = painter.deviceTransform();
    const QRect pixels = toDevice.mapRect(bounds).toAlignedRect();
    QPixmap layer(pixels.size());
    layer.fill(Qt::transparent);
    QPainter ink(&layer);
    ink.setRenderHints(painter.renderHints());
    ink.setFont(painter.font());
    ink.setLayoutDirection(painter.layoutDirection());
    ink.setTransform(toDevice * QTransform::fromTranslate(-pixels.x(), -pixels.y()));
    content(ink);
    ink.end();

    painter.setOpacity(opacity);
    painter.drawPixmap(toDevice.inverted().mapRect(QRectF(pixels)), layer, layer.rect());
    painter.setOpacity(1);
}

} // namespace corvane
