#include "Style/BellShapes.h"

#include <QChar>
#include <QMarginsF>
#include <QPainterPathStroker>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <tuple>

namespace corvane::bell {

namespace {

const std::array<Grid, 3> grids{{
    {16,  1.5, 4.75, 11.25, 7.25,    3.25, 11.25, 2.75, 13.25, 8,           2.25,
     3.5, 14,  7.25, 8.75,  {13, 3}, 3,    1,     9,    3,     {8, 12, 16}, 2.4},
    {22, 2, 6, 16, 10, 5, 16, 4, 18, 11, 3, 4.5, 20, 10, 12, {18, 4}, 4, 1.5, 11, 5, {12, 15, 20}, 4.5},
    {24, 2, 6, 18, 11, 6, 17, 4, 20, 12, 3, 4.5, 21, 10.5, 13.5, {19, 5}, 4, 1.5, 11, 5, {12, 16, 20}, 4.5},
}};

QPainterPath line(double x1, double y1, double x2, double y2) {
    QPainterPath path({x1, y1});
    path.lineTo(x2, y2);
    return path;
}

Badge dot(const Grid& grid) {
    Badge badge;
    badge.shape.addEllipse(grid.dot, grid.dotRadius, grid.dotRadius);
    badge.gap.addEllipse(grid.dot, grid.dotRadius + grid.gap, grid.dotRadius + grid.gap);
    return badge;
}

Badge pill(const Grid& grid, qsizetype characters) {
    const double width = grid.pillWidths.at(static_cast<std::size_t>(characters) - 1);
    const bool isCentred = characters == 3;
    Badge badge;
    badge.pill = {isCentred ? (grid.side - width) / 2 : grid.side - width, grid.side - grid.pillHeight, width,
                  grid.pillHeight};
    badge.shape.addRoundedRect(badge.pill, grid.pillRadius, grid.pillRadius);
    if (isCentred) {
        badge.gap.addRect(0, badge.pill.top() - grid.gap, grid.side, grid.pillHeight + grid.gap);
    } else {
        const QMarginsF gap(grid.gap, grid.gap, grid.gap, grid.gap);
        badge.gap.addRoundedRect(badge.pill.marginsAdded(gap), grid.pillRadius + grid.gap,
                                 grid.pillRadius + grid.gap);
    }
    return badge;
}

/// The rows of a digit of three or four columns; the highest of the four bits is the leftmost column.
using Bitmap = std::array<std::uint8_t, 7>;

struct Character {
    Bitmap rows;
    int width;
};

Character bitmap(QChar character) {
    switch (character.unicode()) {
    case '0':
        return {{0b0110, 0b1001, 0b1001, 0b1001, 0b1001, 0b1001, 0b0110}, 4};
    case '1':
        return {{0b0100, 0b1100, 0b0100, 0b0100, 0b0100, 0b0100, 0b1110}, 3};
    case '2':
        return {{0b0110, 0b1001, 0b0001, 0b0010, 0b0100, 0b1000, 0b1111}, 4};
    case '3':
        return {{0b0110, 0b1001, 0b0001, 0b0110, 0b0001, 0b1001, 0b0110}, 4};
    case '4':
        return {{0b1001, 0b1001, 0b1001, 0b1111, 0b0001, 0b0001, 0b0001}, 4};
    case '5':
        return {{0b1111, 0b1000, 0b1110, 0b0001, 0b0001, 0b1001, 0b0110}, 4};
    case '6':
        return {{0b0110, 0b1000, 0b1000, 0b1110, 0b1001, 0b1001, 0b0110}, 4};
    case '7':
        return {{0b1111, 0b0001, 0b0001, 0b0010, 0b0010, 0b0100, 0b0100}, 4};
    case '8':
        return {{0b0110, 0b1001, 0b1001, 0b0110, 0b1001, 0b1001, 0b0110}, 4};
    case '9':
        return {{0b0110, 0b1001, 0b1001, 0b0111, 0b0001, 0b0001, 0b0110}, 4};
    default:
        return {{0, 0, 0b0100, 0b1110, 0b0100, 0, 0}, 3}; // "+"
    }
}

} // namespace

const Grid& gridFor(int side) {
    if (side % 22 == 0) return grids[1];
    if (side % 24 == 0) return grids[2];
    return grids[0];
}

Badge badge(const Grid& grid, qsizetype characters) {
    return characters == 0 ? dot(grid) : pill(grid, characters);
}

QPainterPath arch(const Grid& grid) {
    const QRectF circle(grid.left, grid.archY - grid.archRadius, grid.right - grid.left, 2 * grid.archRadius);
    QPainterPath path({grid.left, grid.lipY});
    path.lineTo(grid.left, grid.archY);
    path.arcTo(circle, 180, -180);
    path.lineTo(grid.right, grid.lipY);
    return path;
}

QPainterPath strokes(const Grid& grid, qsizetype characters, double extra, double curveError) {
    QPainterPath lines = arch(grid);
    const bool hasLip = characters < 2 || (characters == 2 && grid.side != grids[0].side);
    if (hasLip) lines.addPath(line(grid.lipFrom, grid.lipY, grid.lipTo, grid.lipY));
    if (characters == 0) lines.addPath(line(grid.clapperFrom, grid.clapperY, grid.clapperTo, grid.clapperY));
    lines.addPath(line(grid.knobX, grid.knobFrom, grid.knobX, grid.knobTo));
    QPainterPathStroker stroker;
    stroker.setWidth(grid.stroke + 2 * extra);
    stroker.setCurveThreshold(curveError);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath result = stroker.createStroke(lines);
    result.setFillRule(Qt::WindingFill);
    return result;
}

QPainterPath cells(const QString& text, const QRectF& pill) {
    int width = -1;
    for (const QChar character : text)
        width += bitmap(character).width + 1;
    constexpr int height = std::tuple_size_v<Bitmap>;
    double x = std::floor(pill.x() + (pill.width() - width) / 2);
    const double y = std::floor(pill.y() + (pill.height() - height) / 2);
    QPainterPath result;
    for (const QChar character : text) {
        const Character cell = bitmap(character);
        for (int row = 0; row < height; ++row) {
            for (int column = 0; column < cell.width; ++column) {
                const bool isSet = (cell.rows.at(static_cast<std::size_t>(row)) >> (3 - column) & 1) != 0;
                if (isSet) result.addRect(x + column, y + row, 1, 1);
            }
        }
        x += cell.width + 1;
    }
    return result;
}

} // namespace corvane::bell
