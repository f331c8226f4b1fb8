#pragma once

#include <QMargins>
#include <QSize>
#include <QtGlobal>

namespace corvane {

/// How much larger than usual the views are, for people who want large text. Fonts, sizes, paddings, corners
/// and symbols scale by one factor; lines keep their width, and windows their places on the screen. Main
/// thread only.
namespace textscale {

inline constexpr double smallest = 1;
inline constexpr double largest = 1.5;
inline constexpr double step = 0.125;

/// The supported factor nearest to the desktop's: a step between `smallest` and `largest`. NaN counts as 1.
[[nodiscard]] double nearest(double wanted);

/// The factor in use, initially 1.
[[nodiscard]] double factor();

/// Sets the factor to `nearest(wanted)`; returns whether it changed. Existing views must then be rebuilt:
/// they partly keep the sizes that they were created with.
bool setFactor(double wanted);

} // namespace textscale

/// Converts a length at the ordinary text size to the current one; whole pixels stay whole.
[[nodiscard]] int scaled(int length);
[[nodiscard]] qreal scaled(qreal length);
[[nodiscard]] QSize scaled(QSize size);
[[nodiscard]] QMargins scaled(QMargins margins);

/// A constant of a view that scales with the text: holds the value at the ordinary size and converts to that
/// at the current one.
template <typename Value>
class Scaled {
  public:
    constexpr explicit Scaled(Value value)
        : value_(value) {}

    operator Value() const {
        return scaled(value_);
    } // NOLINT(google-explicit-constructor): it is its purpose

  private:
    Value value_;
};

} // namespace corvane
