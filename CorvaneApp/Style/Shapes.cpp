#include "Style/Shapes.h"

#include <algorithm>

namespace corvane::shapes {

QPainterPath continuousRoundedRect(const QRectF& rect, qreal radius) {
    // One cubic per corner: its length along each side and the reach of its handles, in radii.
    constexpr qreal sideFactor = 1.28;
    constexpr qreal handleFactor = 0.723;

    const qreal side = std::min(sideFactor * radius, std::min(rect.width(), rect.height()) / 2);
    const qreal handle = side * (1 - handleFactor);
    const qreal left = rect.left();
    const qreal top = rect.top();
    const qreal right = rect.right();
    const qreal bottom = rect.bottom();

    QPainterPath path;
    path.moveTo(left, top + side);
    path.cubicTo(left, top + handle, left + handle, top, left + side, top);
    path.lineTo(right - side, top);
    path.cubicTo(right - handle, top, right, top + handle, right, top + side);
    path.lineTo(right, bottom - side);
    path.cubicTo(right, bottom - handle, right - handle, bottom, right - side, bottom);
    path.lineTo(left + side, bottom);
    path.cubicTo(left + handle, bottom, left, bottom - handle, left, bottom - side);
    path.closeSubpath();
    return path;
}

QPainterPath insideStroke(const QRectF& rect, qreal radius, qreal width) {
    const qreal inset = width / 2;
    return continuousRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset);
}

} // namespace corvane::shapes
