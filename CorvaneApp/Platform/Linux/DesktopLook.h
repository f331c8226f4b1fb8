#pragma once

#include "Style/Tokens.h"

#include <optional>
#include <string>

namespace corvane {

/// The desktop portal's settings; the defaults are those without a portal.
struct PortalLook {
    std::optional<ColorScheme> scheme; // none where the portal leaves it to the application
    bool highContrast = false;         // the setting shared by all desktops
    bool toolkitHighContrast = false;  // GNOME's own switch, which older portals pass on
    bool reducedMotion = false;        // shared by all desktops, in newer portals
    bool toolkitAnimations = true;     // GNOME's own switch
    double textScale = 1;

    bool operator==(const PortalLook&) const = default;
};

/// KDE's configuration; none on other desktops.
struct KdeLook {
    std::optional<double> animationFactor; // scales every duration; 0 disables animations
    std::optional<int> windowLightness;    // 0 to 255

    bool operator==(const KdeLook&) const = default;
};

/// The settings of the X server's settings manager: the part of a desktop that GTK programs follow.
struct XSettingsLook {
    std::string themeName; // empty without a manager
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

/// The user's preferences, decided from these sources.
struct DesktopLook {
    ColorScheme scheme = ColorScheme::light;
    Contrast contrast = Contrast::normal;
    bool reduceMotion = false;
    double textScale = 1;

    bool operator==(const DesktopLook&) const = default;
};

/// Pure. ARCHITECTURE.md lists the order of the sources and the reasons.
[[nodiscard]] DesktopLook desktopLook(const LookSources& sources);

/// Whether a GTK theme is dark or has high contrast, judged by its name, which is all that is known of it.
[[nodiscard]] bool isDarkTheme(const std::string& name);
[[nodiscard]] bool isHighContrastTheme(const std::string& name);

} // namespace corvane
