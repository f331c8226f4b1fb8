#include "Tokens.h"

#include <gtest/gtest.h>

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
    const auto expectColors = [](QColor (*color)(ColorScheme), const char* light, const char* dark) {
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
