#include "Platform/MacOS/Geometry.h"

#include <QtGlobal>

namespace corvane::geometry {

QRect fromNative(const NativeRect& rect, double top) {
    // The edges rather than the size are rounded, so that neighbours stay neighbours.
    const int left = qRound(rect.x);
    const int upper = qRound(top - (rect.y + rect.height));
    return {left, upper, qRound(rect.x + rect.width) - left, qRound(top - rect.y) - upper};
}

NativePoint toNative(QPoint origin, QSize size, double top) {
    return {static_cast<double>(origin.x()), top - origin.y() - size.height()};
}

} // namespace corvane::geometry
