#pragma once

#include <QFont>

#include <vector>

/// The desktop's own fonts at sizes in device-independent pixels, rounded to the nearest whole one.
namespace corvane::fonts {

[[nodiscard]] QFont system(qreal pixelSize, QFont::Weight weight = QFont::Normal);
[[nodiscard]] QFont monospaced(qreal pixelSize, QFont::Weight weight = QFont::Normal);

/// How much closer the letters of the narrowest font stand, as a part of its size: any closer and those of a
/// monospaced font touch.
inline constexpr qreal tightestSpacing = 0.04;

/// The font and those for a line that is too long in it, each narrower than the one before: smaller by whole
/// pixels, at the last `smallest` rounded down, then with its letters closer by half and by all of
/// `tightestSpacing`.
[[nodiscard]] std::vector<QFont> narrowing(const QFont& font, qreal smallest);

} // namespace corvane::fonts
