#pragma once

#include <QPainterPath>
#include <QRectF>

namespace corvane::shapes {

/// A rectangle with continuous corners: the curve begins well before the corner and its bend grows and
/// shrinks steadily, where a plain arc's jumps. It passes through the same point on the diagonal as an arc of
/// `radius`.
[[nodiscard]] QPainterPath continuousRoundedRect(const QRectF& rect, qreal radius);

/// The line along which a pen of `width` strokes the inside of that rectangle's border.
[[nodiscard]] QPainterPath insideStroke(const QRectF& rect, qreal radius, qreal width);

} // namespace corvane::shapes
