#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>

/// The system tray's bell as drawings that a desktop fills with the colours of its own bar, and which it
/// finds by their names.
namespace corvane::symbolicbell {

/// The largest number that has a drawing.
constexpr int largestCount = 9;

/// The drawing's name for `waitingCount` waiting agents; empty above `largestCount`.
[[nodiscard]] QString name(int waitingCount);

/// The drawing, as SVG on the grid of `side` units: 16, 22 or 24. The badge's digit is a hole, so that it
/// contrasts whatever the colours are. Desktops that do not fill it show `ink` and `badge`.
[[nodiscard]] QByteArray drawing(int side, int waitingCount, QColor ink, QColor badge);

} // namespace corvane::symbolicbell
