#include "Platform/Linux/DesktopLook.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace corvane {
namespace {

constexpr int breezeLight = 240;
constexpr int breezeDark = 46;

TEST(DesktopLook, isTheDefaultIfNothingIsSet) {
    EXPECT_EQ(desktopLook({}), DesktopLook());
}

TEST(DesktopLook, takesTheFirstSourceThatReportsDarkOrLight) {
    using enum ColorScheme;
    const struct {
        std::optional<ColorScheme> portal;
        std::optional<int> kdeWindow;
        std::string theme;
        ColorScheme palette;
        ColorScheme wanted;
    } table[] = {
        {dark, breezeLight, "Adwaita", light, dark},
        {light, breezeDark, "Adwaita-dark", dark, light},
        {std::nullopt, breezeDark, "Adwaita", light, dark},
        {std::nullopt, breezeLight, "Adwaita-dark", dark, light},
        // XFCE's portal leaves it to the application, whatever the theme.
        {std::nullopt, std::nullopt, "Greybird-dark", light, dark},
        {std::nullopt, std::nullopt, "Greybird", light, light},
        {std::nullopt, std::nullopt, "Clearlooks", dark, dark},
        {std::nullopt, std::nullopt, "", dark, dark},
        {std::nullopt, std::nullopt, "", light, light},
    };
    for (const auto& row : table) {
        LookSources sources;
        sources.portal.scheme = row.portal;
        sources.kde.windowLightness = row.kdeWindow;
        sources.xsettings.themeName = row.theme;
        sources.palette = row.palette;
        EXPECT_EQ(desktopLook(sources).scheme, row.wanted) << &row - table;
    }
}

TEST(DesktopLook, takesLxqtsColourBeforeTheTheme) {
    LookSources sources;
    sources.lxqtWindowLightness = 43;
    EXPECT_EQ(desktopLook(sources).scheme, ColorScheme::dark);
    sources.lxqtWindowLightness = 239;
    sources.xsettings.themeName = "Adwaita-dark";
    EXPECT_EQ(desktopLook(sources).scheme, ColorScheme::light);
}

TEST(DesktopLook, knowsTheDarkThemesOfTheDesktopsByTheirNames) {
    for (const char* const name :
         {"Adwaita-dark", "Greybird-dark", "Adwaita:dark", "Arc-Dark", "Mint-Y-Dark-Aqua", "Yaru-purple-dark",
          "Breeze-Dark", "Blackbird", "BlackMATE", "HighContrastInverse", "ContrastHighInverse",
          "Materia-dark-compact", "Flat-Remix-GTK-Blue-Darkest", "Darkmint-dark"}) {
        EXPECT_TRUE(isDarkTheme(name)) << name;
    }
    for (const char* const name :
         {"", "Adwaita", "Greybird", "Arc-Darker", "Mint-Y-Darker-Aqua", "Menta", "Darkmint", "TraditionalOk",
          "Breeze", "HighContrast", "ContrastHigh", "Yaru"}) {
        EXPECT_FALSE(isDarkTheme(name)) << name;
    }
}

TEST(DesktopLook, hasHighContrastIfAnySourceRequestsIt) {
    LookSources all;
    all.portal.highContrast = true;
    LookSources toolkit;
    toolkit.portal.toolkitHighContrast = true;
    LookSources theme;
    theme.xsettings.themeName = "HighContrast";
    LookSources mate;
    mate.xsettings.themeName = "ContrastHighInverse";
    for (const LookSources& sources : {all, toolkit, theme, mate})
        EXPECT_EQ(desktopLook(sources).contrast, Contrast::high);
    EXPECT_EQ(desktopLook(mate).scheme, ColorScheme::dark);
}

TEST(DesktopLook, reducesMotionIfAnySourceRequestsIt) {
    LookSources all;
    all.portal.reducedMotion = true;
    LookSources toolkit;
    toolkit.portal.toolkitAnimations = false;
    LookSources kde;
    kde.kde.animationFactor = 0;
    LookSources xsettings;
    xsettings.xsettings.animations = false;
    for (const LookSources& sources : {all, toolkit, kde, xsettings})
        EXPECT_TRUE(desktopLook(sources).reduceMotion);

    LookSources slow;
    slow.kde.animationFactor = 0.25;
    slow.xsettings.animations = true;
    EXPECT_FALSE(desktopLook(slow).reduceMotion);
}

TEST(DesktopLook, takesTheTextScaleFromThePortal) {
    LookSources sources;
    sources.portal.textScale = 1.25;
    EXPECT_EQ(desktopLook(sources).textScale, 1.25);
}

} // namespace
} // namespace corvane
