#pragma once

#include <QPoint>
#include <QRect>

#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Whether hosts report clicks in desktop coordinates: on X11 except in MATE, and on Wayland if the bar of
/// `desktops` (the value of XDG_CURRENT_DESKTOP) belongs to the compositor. Other bars on Wayland, and
/// MATE's, only know and report positions within themselves.
[[nodiscard]] bool notifierPlaceIsKnown(bool isWayland, std::string_view desktops);

/// The icon's place on the desktop, in device-independent pixels, if a StatusNotifierItem host reports a
/// click at `given`. Empty if `given` is on no screen, or is the origin, which hosts report if they do not
/// know the place.
///
/// The protocol does not define the unit. If the device pixel `ratio` is not 1, `given` is interpreted in the
/// unit in which it is nearer to `pointer`; without a pointer, in device-independent pixels.
[[nodiscard]] QRect notifierPlace(QPoint given, std::optional<QPoint> pointer, qreal ratio,
                                  const std::vector<QRect>& screens);

/// The icon's place if the host does not report it: around `pointer`, in device-independent pixels, if that
/// is on one of the `bars`, in device pixels; else empty.
[[nodiscard]] QRect notifierPlaceOnBar(QPoint pointer, qreal ratio, const std::vector<QRect>& bars);

} // namespace corvane
