#pragma once

#include "Style/Tokens.h"

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

/// The bar that embeds the icon, which need not look like the applications: it may be dark on a light
/// desktop. Main thread only.
class TrayBar : public QObject {
    Q_OBJECT

  public:
    TrayBar();

    /// Whether the bar around the embedded window `icon` is light or dark: by the colours that the tray
    /// requests of icons, else by the pixels beside the icon. None if neither is available.
    [[nodiscard]] std::optional<ColorScheme> scheme(xcb_window_t icon);

    /// Whether this desktop's bar is light or dark, as the screen shows it; of several, the one at `place`,
    /// in device pixels. None if there is no bar, or if X11 cannot see it, as on Wayland desktops.
    [[nodiscard]] static std::optional<ColorScheme> schemeOfBars(QPoint place);

    /// Whether the active window is full-screen and covers the bar that `schemeOfBars` samples.
    [[nodiscard]] static bool isBarCovered(QPoint place);

    /// The scheme for the colours that a tray publishes as _NET_SYSTEM_TRAY_COLORS: four, the first of which
    /// is that of text, in three channels of 16 bits each.
    [[nodiscard]] static std::optional<ColorScheme> schemeOf(const std::vector<std::uint32_t>& trayColors);

    /// The scheme for the pixels of `bar` outside the rectangle `icon`: dark if most of them are.
    [[nodiscard]] static std::optional<ColorScheme> schemeAround(const QRect& icon, const QImage& bar);

  Q_SIGNALS:
    /// The tray has requested other colours.
    void changed();

  private:
    void watch(xcb_window_t tray);

    xcb_window_t tray_ = XCB_WINDOW_NONE;
};

} // namespace corvane
