#include "Platform/Linux/TrayBar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {
namespace {

/// What a tray publishes: a colour for text, then those for errors, warnings and success.
std::vector<std::uint32_t> colors(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    std::vector<std::uint32_t> numbers{red, green, blue};
    numbers.resize(12, 0x8000);
    return numbers;
}

QImage picture(QColor color) {
    QImage image(28, 28, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

constexpr QRect icon{2, 2, 24, 24};

TEST(TrayBar, lightTextMeansADarkBar) {
    EXPECT_EQ(TrayBar::schemeOf(colors(0xFFFF, 0xFFFF, 0xFFFF)), ColorScheme::dark);
    EXPECT_EQ(TrayBar::schemeOf(colors(0xEEEE, 0xEEEE, 0xEC00)), ColorScheme::dark);
    EXPECT_EQ(TrayBar::schemeOf(colors(0, 0, 0)), ColorScheme::light);
    EXPECT_EQ(TrayBar::schemeOf(colors(0x2E00, 0x3400, 0x3600)), ColorScheme::light);
}

TEST(TrayBar, malformedColoursAreIgnored) {
    EXPECT_EQ(TrayBar::schemeOf({}), std::nullopt);
    EXPECT_EQ(TrayBar::schemeOf({0xFFFF, 0xFFFF, 0xFFFF}), std::nullopt);
    EXPECT_EQ(TrayBar::schemeOf(std::vector<std::uint32_t>(13, 0xFFFF)), std::nullopt);
}

TEST(TrayBar, thePixelsBesideTheIconDecide) {
    QImage dark = picture(QColor(40, 40, 44));
    QImage light = picture(QColor(220, 218, 213));
    // Not the icon's own.
    for (int y = icon.top(); y <= icon.bottom(); ++y) {
        for (int x = icon.left(); x <= icon.right(); ++x) {
            dark.setPixelColor(x, y, Qt::white);
            light.setPixelColor(x, y, Qt::black);
        }
    }
    EXPECT_EQ(TrayBar::schemeAround(icon, dark), ColorScheme::dark);
    EXPECT_EQ(TrayBar::schemeAround(icon, light), ColorScheme::light);
}

TEST(TrayBar, withoutPixelsBesideTheIconNothingIsKnown) {
    EXPECT_EQ(TrayBar::schemeAround(icon, QImage()), std::nullopt);
    EXPECT_EQ(TrayBar::schemeAround(QRect(0, 0, 28, 28), picture(Qt::black)), std::nullopt);
}

} // namespace
} // namespace corvane
