#pragma once

#include "Style/Tokens.h"

#include <QIcon>
#include <QImage>
#include <QString>

#include <string_view>

/// The system tray's bell: with a dot while one agent waits, with their number from two on. Drawn for each
/// size on a grid that puts its straight edges on whole pixels.
namespace corvane::statusicon {

/// The icon, `side` (at least 1) device pixels square, on a transparent background. `bar` is the appearance
/// of the bar that holds it; a thin outline around the bell keeps it readable if that is wrong. A negative
/// `waitingCount` counts as zero.
[[nodiscard]] QImage image(int side, int waitingCount, ColorScheme bar);

/// The same as an icon that renders itself at any size, and offers those that trays use.
[[nodiscard]] QIcon icon(int waitingCount, ColorScheme bar);

/// The badge's text: empty for zero and one, else the number, "99+" above 99.
[[nodiscard]] QString badgeText(int waitingCount);

/// The icon's accessible label, such as "3 agents waiting for you".
[[nodiscard]] QString label(int waitingCount);

/// The appearance of the bar that holds the tray: dark on the desktops in `desktops` (the value of
/// XDG_CURRENT_DESKTOP) whose bar always or mostly is, else that of the applications.
[[nodiscard]] ColorScheme barScheme(std::string_view desktops, ColorScheme applications);

/// Whether the bar of a desktop in `desktops` fills symbolic icons with its own colours.
[[nodiscard]] bool isFilledByBar(std::string_view desktops);

} // namespace corvane::statusicon
