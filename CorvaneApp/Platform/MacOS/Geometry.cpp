#include "Platform/MacOS/Geometry.h"

#include <QtGlobal>

namespace corvane::geometry {

QRect fromNative(const NativeRect& rect, double top) {
    // Rounds the edges rather than the size, so that adjacent rectangles stay adjacent.
    const int left = qRound(rect.x);
    const int upper = qRound(top - (rect.y + rect.height));
    return {left, upper, qRound(rect.x + rect.width) - left, qRound(top - rect.y) - upper};
}

NativePoint toNative(QPoint origin, QSize size, double top) {
    return {static_cast<double>(origin.x()), top - origin.y() - size.height()};
}

} // namespace corvane::geometry
