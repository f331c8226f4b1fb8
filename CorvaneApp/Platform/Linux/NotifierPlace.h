#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Whether hosts know where they are clicked: on X11 except MATE, and on desktops (the value of
/// XDG_CURRENT_DESKTOP) whose bar belongs to the compositor. Other bars on Wayland, and MATE's, know places
/// within themselves only, and report those.
[[nodiscard]] bool notifierPlaceIsKnown(bool isWayland, std::string_view desktops);

/// The icon's place on the desktop, in device-independent pixels, where a host of StatusNotifierItems reports
/// a click at `given`. Empty if that says nothing: hosts that do not know the place report the origin.
///
/// The protocol leaves the unit open. On a screen of another `ratio` of device pixels than 1, `given` is
/// taken in the unit in which it is nearer to `pointer`; without a pointer, device-independent.
[[nodiscard]] QRect notifierPlace(QPoint given, std::optional<QPoint> pointer, qreal ratio,
                                  const std::vector<QRect>& screens);

/// The icon's place where the host does not tell it but `pointer`, in device-independent pixels, is on one of
/// the `bars`, in device pixels; else empty.
[[nodiscard]] QRect notifierPlaceOnBar(QPoint pointer, qreal ratio, const std::vector<QRect>& bars);

} // namespace corvane
