#pragma once

#include <QPainterPath>
#include <QRectF>

namespace corvane::shapes {

/// A rectangle with continuous corners: the curve begins well before the corner and its curvature changes
/// gradually, where an arc's jumps. It passes through the same point on the diagonal as an arc of `radius`.
[[nodiscard]] QPainterPath continuousRoundedRect(const QRectF& rect, qreal radius);

/// The path along which a pen of `width` strokes just inside that rectangle's edge.
[[nodiscard]] QPainterPath insideStroke(const QRectF& rect, qreal radius, qreal width);

} // namespace corvane::shapes
