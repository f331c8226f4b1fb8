#pragma once

#include "Style/Tokens.h"

#include <QIcon>
#include <QImage>
#include <QString>

#include <string_view>

/// The bell of the system tray: with a dot while one agent waits, with their number from two on. Drawn anew
/// for each size on a grid on which its straight edges fall on whole pixels.
namespace corvane::statusicon {

/// The icon with a side of `side` device pixels, at least 1, on a transparent ground. `bar` is the appearance
/// of what it stands on; a thin line around the bell keeps it readable where that is wrong. A negative
/// `waitingCount` counts as zero.
[[nodiscard]] QImage image(int side, int waitingCount, ColorScheme bar);

/// The same as an icon that draws itself for whatever size it is asked for, and offers those that trays use.
[[nodiscard]] QIcon icon(int waitingCount, ColorScheme bar);

/// What the badge says: nothing for none and one, else the number, "99+" above 99.
[[nodiscard]] QString badgeText(int waitingCount);

/// What assistive technology says, such as "3 agents waiting for you".
[[nodiscard]] QString label(int waitingCount);

/// The appearance of the bar that holds the tray: dark on the desktops in `desktops` (the value of
/// XDG_CURRENT_DESKTOP) whose bar always is, else that of the applications.
[[nodiscard]] ColorScheme barScheme(std::string_view desktops, ColorScheme applications);

} // namespace corvane::statusicon
