#pragma once

#include "Style/Tokens.h"

#include <optional>
#include <string>

namespace corvane {

/// What the desktop portal says; each value as without a portal.
struct PortalLook {
    std::optional<ColorScheme> scheme; // none where it leaves that to the application
    bool highContrast = false;         // the contrast of all desktops
    bool toolkitHighContrast = false;  // GNOME's own switch, which older portals pass on
    bool reducedMotion = false;        // of all desktops, in newer portals
    bool toolkitAnimations = true;     // GNOME's own switch
    double textScale = 1;

    bool operator==(const PortalLook&) const = default;
};

/// What KDE's configuration says; none outside of that desktop.
struct KdeLook {
    std::optional<double> animationFactor; // of every duration; 0 is none
    std::optional<int> windowLightness;    // 0 to 255

    bool operator==(const KdeLook&) const = default;
};

/// What the settings manager of the X server says: a desktop's part that GTK's programs follow.
struct XSettingsLook {
    std::string themeName; // empty without one
    std::optional<bool> animations;

    bool operator==(const XSettingsLook&) const = default;
};

/// All places where desktops keep the user's preferences for how programs look.
struct LookSources {
    PortalLook portal;
    KdeLook kde;
    std::optional<int> lxqtWindowLightness; // 0 to 255
    XSettingsLook xsettings;
    ColorScheme palette = ColorScheme::light; // of Qt's own theme for the desktop
};

/// What the user wants.
struct DesktopLook {
    ColorScheme scheme = ColorScheme::light;
    Contrast contrast = Contrast::normal;
    bool reduceMotion = false;
    double textScale = 1;

    bool operator==(const DesktopLook&) const = default;
};

/// Pure. ARCHITECTURE.md has the order of the places and the reasons.
[[nodiscard]] DesktopLook desktopLook(const LookSources& sources);

/// Whether a GTK theme is dark or has high contrast, by its name, which is all that is known of it.
[[nodiscard]] bool isDarkTheme(const std::string& name);
[[nodiscard]] bool isHighContrastTheme(const std::string& name);

} // namespace corvane
