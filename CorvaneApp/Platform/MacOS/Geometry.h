#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Converts between the two desktop coordinate systems. In Qt's, y grows downwards from the upper left corner
/// of the screen with the menu bar, in AppKit's upwards from that screen's lower left corner. A point is a
/// device-independent pixel in both.
namespace corvane::geometry {

/// A rectangle in AppKit's coordinates: `x` and `y` are its lower left corner.
struct NativeRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const NativeRect&, const NativeRect&) = default;
};

struct NativePoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const NativePoint&, const NativePoint&) = default;
};

/// The same rectangle for Qt, its edges on whole pixels. `top` is the upper edge of the screen with the menu
/// bar in AppKit's coordinates.
[[nodiscard]] QRect fromNative(const NativeRect& rect, double top);

/// The lower left corner of a rectangle that has its upper left corner at `origin` in Qt's coordinates.
[[nodiscard]] NativePoint toNative(QPoint origin, QSize size, double top);

} // namespace corvane::geometry
