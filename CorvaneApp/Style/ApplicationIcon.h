#pragma once

#include <QIcon>
#include <QImage>

/// The application's icon: a raven on an amber tile. Needs no QApplication, apart from `icon`.
namespace corvane::applicationicon {

/// The icon, `side` (at least 3) device pixels square, on a transparent background. The tile's margin is a
/// whole number of pixels, so that its edges are sharp; up to 24 pixels the raven is drawn simpler and
/// larger.
[[nodiscard]] QImage image(int side);

/// The same in the sizes that task bars and window lists ask for, from 16 to 128 pixels.
[[nodiscard]] QIcon icon();

} // namespace corvane::applicationicon
