#include "Style/TextScale.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

double presentFactor = 1;

} // namespace

namespace textscale {

double nearest(double wanted) {
    if (std::isnan(wanted)) return 1;
    return std::round(std::clamp(wanted, smallest, largest) / step) * step;
}

double factor() {
    return presentFactor;
}

bool setFactor(double wanted) {
    const double next = nearest(wanted);
    return std::exchange(presentFactor, next) != next;
}

} // namespace textscale

int scaled(int length) {
    return qRound(length * presentFactor);
}

qreal scaled(qreal length) {
    return length * presentFactor;
}

QSize scaled(QSize size) {
    return {scaled(size.width()), scaled(size.height())};
}

QMargins scaled(QMargins margins) {
    return {scaled(margins.left()), scaled(margins.top()), scaled(margins.right()), scaled(margins.bottom())};
}

} // namespace corvane
