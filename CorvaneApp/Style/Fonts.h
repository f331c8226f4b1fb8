#pragma once

#include <QFont>

#include <vector>

/// The desktop's own fonts at sizes in device-independent pixels, rounded to the nearest whole one.
namespace corvane::fonts {

[[nodiscard]] QFont system(qreal pixelSize, QFont::Weight weight = QFont::Normal);
[[nodiscard]] QFont monospaced(qreal pixelSize, QFont::Weight weight = QFont::Normal);

/// How much tighter the letters of the narrowest font are spaced, as a fraction of its size: any tighter, and
/// those of a monospaced font touch.
inline constexpr qreal tightestSpacing = 0.04;

/// `font`, then alternatives for a line that is too long in it, each narrower than the one before: smaller by
/// whole pixels, down to `smallest` rounded down, then with letters spaced tighter by half and by all of
/// `tightestSpacing`.
[[nodiscard]] std::vector<QFont> narrowing(const QFont& font, qreal smallest);

} // namespace corvane::fonts
