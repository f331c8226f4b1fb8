#pragma once

#include <QPainterPath>
#include <QPointF>

#include <cstdint>
#include <vector>

namespace corvane {

/// One segment of an outline, as drawing interfaces take it.
struct PathSegment {
    enum class Kind : std::uint8_t { move, line, curve };

    Kind kind = Kind::move;
    QPointF end;
    QPointF control1; ///< for a curve only, like the next
    QPointF control2;

    friend bool operator==(const PathSegment&, const PathSegment&) = default;
};

/// The segments of `path`, in its own coordinates and order.
[[nodiscard]] std::vector<PathSegment> pathSegments(const QPainterPath& path);

} // namespace corvane
