#pragma once

#include <QMargins>
#include <QSize>
#include <QtGlobal>

namespace corvane {

/// How much larger than usual the views are, for people who want large text. Fonts, sizes, paddings, corners
/// and symbols grow by one factor; lines keep their width, and so do the places of windows on the screen.
/// Main thread only.
namespace textscale {

inline constexpr double smallest = 1;
inline constexpr double largest = 1.5;
inline constexpr double step = 0.125;

/// The factor that comes nearest to what the desktop wants: one of the steps between the two ends. What is
/// no number counts as 1.
[[nodiscard]] double nearest(double wanted);

/// The factor in use, 1 at first.
[[nodiscard]] double factor();

/// Takes `nearest(wanted)` into use; whether it is another one than before. Views that stand must be made
/// anew then: they keep the sizes that they were made with in part.
bool setFactor(double wanted);

} // namespace textscale

/// A length at the ordinary text size as it is at the present one; whole pixels stay whole.
[[nodiscard]] int scaled(int length);
[[nodiscard]] qreal scaled(qreal length);
[[nodiscard]] QSize scaled(QSize size);
[[nodiscard]] QMargins scaled(QMargins margins);

/// A constant of a view that grows with the text: holds the value at the ordinary size and reads as that at
/// the present one.
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
