#pragma once

#include <QFont>

/// The desktop's own fonts at sizes in device-independent pixels.
namespace corvane::fonts {

[[nodiscard]] QFont system(int pixelSize, QFont::Weight weight = QFont::Normal);
[[nodiscard]] QFont monospaced(int pixelSize, QFont::Weight weight = QFont::Normal);

} // namespace corvane::fonts
