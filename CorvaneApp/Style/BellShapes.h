#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>

/// The shapes of the system tray's bell, in the units of one of three grids that put its straight edges on
/// whole pixels.
namespace corvane::bell {

/// The bell's dimensions on one grid, in grid units.
struct Grid {
    int side = 0;
    double stroke = 0;
    double left = 0; // the middle of the arch's sides
    double right = 0;
    double archY = 0;
    double archRadius = 0;
    double lipY = 0;
    double lipFrom = 0;
    double lipTo = 0;
    double knobX = 0;
    double knobFrom = 0;
    double knobTo = 0;
    double clapperY = 0;
    double clapperFrom = 0;
    double clapperTo = 0;
    QPointF dot;
    double dotRadius = 0;
    double gap = 0;
    double pillHeight = 0;
    double pillRadius = 0;
    std::array<double, 3> pillWidths{}; // for one, two and three characters
    double digitMargins = 0;            // the pill's width minus the largest width of its digits
};

/// The grid for an icon of `side` pixels.
[[nodiscard]] const Grid& gridFor(int side);

/// The badge's shape, and the area that is erased around it.
struct Badge {
    QPainterPath shape;
    QPainterPath gap;
    QRectF pill; // empty for a dot
};

/// A dot for no characters, else a pill for one to three of them.
[[nodiscard]] Badge badge(const Grid& grid, qsizetype characters);

/// The bell's arch down to the lip.
[[nodiscard]] QPainterPath arch(const Grid& grid);

/// The bell's strokes as a filled shape, `extra` wider on each side. Its curves are off by at most
/// `curveError`.
[[nodiscard]] QPainterPath strokes(const Grid& grid, qsizetype characters, double extra,
                                   double curveError = 0.25);

/// The digits of a badge in `pill` as bitmaps with cells of one unit, which small icons draw instead of
/// letters. `text` may contain digits and "+" only.
[[nodiscard]] QPainterPath cells(const QString& text, const QRectF& pill);

} // namespace corvane::bell
