#pragma once

#include <QPainterPath>
#include <QPointF>

#include <cstdint>
#include <vector>

namespace corvane {

/// One step of an outline, as drawing interfaces take them.
struct PathSegment {
    enum class Kind : std::uint8_t { move, line, curve };

    Kind kind = Kind::move;
    QPointF end;
    QPointF control1; ///< of a curve only, as the next
    QPointF control2;

    friend bool operator==(const PathSegment&, const PathSegment&) = default;
};

/// The steps of `path`, in its own coordinates and order.
[[nodiscard]] std::vector<PathSegment> pathSegments(const QPainterPath& path);

} // namespace corvane
