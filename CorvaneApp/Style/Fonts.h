#pragma once

#include <QFont>

/// The desktop's own fonts at sizes in device-independent pixels, rounded to the nearest whole one.
namespace corvane::fonts {

[[nodiscard]] QFont system(qreal pixelSize, QFont::Weight weight = QFont::Normal);
[[nodiscard]] QFont monospaced(qreal pixelSize, QFont::Weight weight = QFont::Normal);

} // namespace corvane::fonts
