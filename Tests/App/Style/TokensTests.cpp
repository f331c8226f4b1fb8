#include "Style/Tokens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace corvane {
namespace {

struct Expected {
    Token token;
    const char* light;
    const char* dark;
};

TEST(Tokens, haveTheirValuesInBothAppearances) {
    const Expected table[] = {
        {Tokens::primary, "#8a5300", "#ffc15a"},   {Tokens::onPrimary, "#ffffff", "#3a2400"},
        {Tokens::secondary, "#1f6e46", "#7fd6a4"}, {Tokens::background, "#f5f5f7", "#1c1c1e"},
        {Tokens::surface, "#ffffff", "#2c2c2e"},   {Tokens::onSurface, "#1d1d1f", "#f2f2f7"},
        {Tokens::error, "#b3261e", "#f2b8b5"},
    };
    for (const Expected& expected : table) {
        EXPECT_EQ(expected.token.color(ColorScheme::light).name().toStdString(), expected.light);
        EXPECT_EQ(expected.token.color(ColorScheme::dark).name().toStdString(), expected.dark);
    }
}

TEST(Tokens, areOpaqueWithExactComponents) {
    const QColor color = Tokens::secondary.color(ColorScheme::light);
    EXPECT_EQ(color.red(), 31);
    EXPECT_EQ(color.green(), 110);
    EXPECT_EQ(color.blue(), 70);
    EXPECT_EQ(color.alpha(), 255);
}

TEST(Tokens, takeTheDarkValueOnlyFromAPaletteDarkerThanItsText) {
    EXPECT_EQ(Tokens::scheme(Tokens::palette(ColorScheme::dark)), ColorScheme::dark);
    EXPECT_EQ(Tokens::scheme(Tokens::palette(ColorScheme::light)), ColorScheme::light);

    QPalette highContrastDark(Qt::black, Qt::black);
    highContrastDark.setColor(QPalette::WindowText, Qt::yellow);
    EXPECT_EQ(Tokens::scheme(highContrastDark), ColorScheme::dark);

    QPalette highContrastLight(Qt::white, Qt::white);
    highContrastLight.setColor(QPalette::WindowText, Qt::black);
    EXPECT_EQ(Tokens::scheme(highContrastLight), ColorScheme::light);

    QPalette neither(Qt::gray, Qt::gray);
    neither.setColor(QPalette::WindowText, Qt::gray);
    EXPECT_EQ(Tokens::scheme(neither), ColorScheme::light);
}

TEST(Tokens, applicationPaletteLetsTheDesktopsOwnAppearanceBeReadThroughIt) {
    EXPECT_EQ(Tokens::desktopScheme(QPalette(Qt::white, Qt::white)), ColorScheme::light);
    EXPECT_EQ(Tokens::desktopScheme(QPalette(Qt::black, Qt::black)), ColorScheme::dark);
    for (const ColorScheme own : {ColorScheme::light, ColorScheme::dark}) {
        const QPalette palette = Tokens::palette(own);
        EXPECT_EQ(Tokens::desktopScheme(palette.resolve(QPalette(Qt::white, Qt::white))), ColorScheme::light);
        EXPECT_EQ(Tokens::desktopScheme(palette.resolve(QPalette(Qt::black, Qt::black))), ColorScheme::dark);
        EXPECT_EQ(Tokens::scheme(palette.resolve(QPalette(Qt::gray, Qt::gray))), own);
    }
}

TEST(Tokens, mixedColoursMatchTheirTable) {
    EXPECT_EQ(Tokens::textSecondary(ColorScheme::light).name().toStdString(), "#656567");
    EXPECT_EQ(Tokens::textSecondary(ColorScheme::dark).name().toStdString(), "#b3b3b7");
    EXPECT_EQ(Tokens::hoverFill(ColorScheme::light).name().toStdString(), "#f4f4f4");
    EXPECT_EQ(Tokens::hoverFill(ColorScheme::dark).name().toStdString(), "#3a3a3c");
    EXPECT_EQ(Tokens::pressedFill(ColorScheme::light).name().toStdString(), "#e8e8e9");
    EXPECT_EQ(Tokens::pressedFill(ColorScheme::dark).name().toStdString(), "#464648");
    EXPECT_EQ(Tokens::primaryHover(ColorScheme::light).name().toStdString(), "#794a05");
    EXPECT_EQ(Tokens::primaryHover(ColorScheme::dark).name().toStdString(), "#fdc973");
}

TEST(Tokens, coloursOfWindowsAndControlsMatchTheirTable) {
    const auto expectColors = [](QColor (*color)(Look), const char* light, const char* dark) {
        EXPECT_EQ(color(ColorScheme::light).name().toStdString(), light);
        EXPECT_EQ(color(ColorScheme::dark).name().toStdString(), dark);
    };
    expectColors(Tokens::textSecondaryOnBackground, "#626264", "#aeaeb2");
    expectColors(Tokens::divider, "#e4e4e4", "#444446");
    expectColors(Tokens::dividerOnBackground, "#dbdbdd", "#363638");
    expectColors(Tokens::controlBorder, "#c9c9c9", "#67676a");
    expectColors(Tokens::switchOff, "#939393", "#8b8b8e");
    expectColors(Tokens::switchOffKnob, "#ffffff", "#2c2c2e");
    expectColors(Tokens::runningDot, "#b2b2b3", "#707072");
    expectColors(Tokens::scrollThumb, "#bbbbbc", "#67676a");
    expectColors(Tokens::scrollThumbHovered, "#8e8e8f", "#8f8f92");
}

/// The contrast ratio of two opaque colours according to WCAG, from 1 to 21.
double contrastRatio(const QColor& first, const QColor& second) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double channel) {
            return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double a = luminance(first) + 0.05;
    const double b = luminance(second) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(Tokens, highContrastColoursMatchTheirTable) {
    const auto expectColors = [](QColor (*color)(Look), const char* light, const char* dark) {
        EXPECT_EQ(color({ColorScheme::light, Contrast::high}).name().toStdString(), light);
        EXPECT_EQ(color({ColorScheme::dark, Contrast::high}).name().toStdString(), dark);
    };
    expectColors(Tokens::textSecondary, "#414143", "#d2d2d7");
    expectColors(Tokens::textSecondaryOnBackground, "#404042", "#d0d0d4");
    expectColors(Tokens::divider, "#838384", "#99999d");
    expectColors(Tokens::dividerOnBackground, "#7e7e80", "#929295");
    expectColors(Tokens::controlBorder, "#565657", "#c0c0c5");
    expectColors(Tokens::hairline, "#565657", "#c0c0c5");
    expectColors(Tokens::hoverFill, "#e4e4e4", "#444446");
    expectColors(Tokens::pressedFill, "#d2d2d2", "#545456");
    expectColors(Tokens::switchOff, "#838384", "#99999d");
    expectColors(Tokens::runningDot, "#a0a0a1", "#7f7f82");
    expectColors(Tokens::primaryHover, "#794a05", "#fdc973");
    EXPECT_EQ(Tokens::hairline({ColorScheme::light, Contrast::high}).alpha(), 255);
    EXPECT_EQ(Tokens::primary.color({ColorScheme::dark, Contrast::high}),
              Tokens::primary.color(ColorScheme::dark));
}

TEST(Tokens, highContrastReachesItsRatios) {
    const struct {
        QColor (*color)(Look);
        double light;
        double dark;
    } table[] = {
        {Tokens::textSecondary, 10.18, 9.25},
        {Tokens::divider, 3.79, 4.91},
        {Tokens::controlBorder, 7.33, 7.69},
    };
    for (const auto& row : table) {
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            const double ratio =
                contrastRatio(row.color({scheme, Contrast::high}), Tokens::surface.color(scheme));
            EXPECT_NEAR(ratio, scheme == ColorScheme::dark ? row.dark : row.light, 0.005);
        }
    }
}

TEST(Tokens, aPaletteReportsTheLookThatItWasMadeFor) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        for (const Contrast contrast : {Contrast::normal, Contrast::high}) {
            const Look look(scheme, contrast);
            EXPECT_TRUE(Tokens::look(Tokens::palette(look)) == look);
        }
    }
    EXPECT_FALSE(Tokens::look(QPalette(Qt::white)).isHighContrast()) << "another program's palette";
}

TEST(Tokens, theHairlineIsBlackOrWhiteAtItsOpacity) {
    EXPECT_EQ(Tokens::hairline(ColorScheme::light).name(QColor::HexArgb).toStdString(), "#24000000");
    EXPECT_EQ(Tokens::hairline(ColorScheme::dark).name(QColor::HexArgb).toStdString(), "#29ffffff");
}

TEST(Tokens, aShadowIsBlackAtTheGivenOpacity) {
    EXPECT_EQ(Tokens::shadow(0.44).name(QColor::HexArgb).toStdString(), "#70000000");
    EXPECT_EQ(Tokens::shadow(1).name(QColor::HexArgb).toStdString(), "#ff000000");
    EXPECT_EQ(Tokens::shadow(0).alpha(), 0);
}

} // namespace
} // namespace corvane
