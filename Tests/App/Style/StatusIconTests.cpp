#include "Style/StatusIcon.h"
#include "Support/TestSupport.h"

#include <QGuiApplication>
#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace corvane {
namespace {

// The bars in the designer's picture of the icons.
QColor barColor(ColorScheme bar) {
    return bar == ColorScheme::dark ? QColor(0x17, 0x17, 0x1A) : QColor(0xEF, 0xF0, 0xF1);
}

QImage onBar(const QImage& icon, const QColor& bar) {
    QImage result(icon.size(), QImage::Format_RGB32);
    result.fill(bar);
    QPainter(&result).drawImage(0, 0, icon);
    return result;
}

int distance(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

std::string hex(QRgb color) {
    return QString::number(color & 0xFFFFFF, 16).toStdString();
}

struct Sample {
    int column;
    int count;
};
constexpr std::array<Sample, 5> samples{{{0, 0}, {1, 1}, {2, 2}, {3, 12}, {4, 100}}};

// The designer's picture has each icon of 16, 22, 24 and 32 pixels once on a light and once on a dark bar,
// here in cells of 32 pixels.
QImage designed(int row, int column, int side) {
    static const QImage sheet(QStringLiteral(CORVANE_STATUS_ICON_PICTURES "/design.png"));
    return sheet.copy(column * 32, row * 32, side, side);
}

TEST(StatusIcon, smallIconsHaveTheDesignersPixels) {
    int row = 0;
    for (const ColorScheme bar : {ColorScheme::light, ColorScheme::dark}) {
        for (const int side : {16, 22, 24, 32}) {
            for (const Sample& sample : samples) {
                // At 32 pixels the digits use the desktop's font, which differs between the picture and the
                // tests.
                if (side == 32 && sample.count > 1) continue;
                const QImage drawn = onBar(statusicon::image(side, sample.count, bar), barColor(bar));
                const QImage wanted = designed(row, sample.column, side);
                ASSERT_EQ(wanted.size(), drawn.size());
                int worst = 0;
                double sum = 0;
                std::string where;
                for (int y = 0; y < side; ++y) {
                    for (int x = 0; x < side; ++x) {
                        const int found = distance(drawn.pixel(x, y), wanted.pixel(x, y));
                        sum += found;
                        if (found <= worst) continue;
                        worst = found;
                        where = std::to_string(x) + "," + std::to_string(y) + ": " + hex(drawn.pixel(x, y)) +
                                " in place of " + hex(wanted.pixel(x, y));
                    }
                }
                // Another way to draw the same curve shades edges a little differently.
                EXPECT_LE(worst, 70) << side << " px, " << sample.count << " waiting, at " << where;
                EXPECT_LE(sum / side / side, 4.5) << side << " px, " << sample.count << " waiting";
            }
            ++row;
        }
    }
}

// How many pixels have exactly this colour.
int pixels(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color.rgba() ? 1 : 0;
    }
    return count;
}

TEST(StatusIcon, badgeTextIsTheNumberFromTwoOn) {
    EXPECT_EQ(statusicon::badgeText(-1), QString());
    EXPECT_EQ(statusicon::badgeText(0), QString());
    EXPECT_EQ(statusicon::badgeText(1), QString());
    EXPECT_EQ(statusicon::badgeText(2), QStringLiteral("2"));
    EXPECT_EQ(statusicon::badgeText(10), QStringLiteral("10"));
    EXPECT_EQ(statusicon::badgeText(98), QStringLiteral("98"));
    EXPECT_EQ(statusicon::badgeText(99), QStringLiteral("99"));
    EXPECT_EQ(statusicon::badgeText(100), QStringLiteral("99+"));
    EXPECT_EQ(statusicon::badgeText(12345), QStringLiteral("99+"));
}

TEST(StatusIcon, labelShowsHowManyWait) {
    EXPECT_EQ(statusicon::label(-1), QStringLiteral("Corvane"));
    EXPECT_EQ(statusicon::label(0), QStringLiteral("Corvane"));
    EXPECT_EQ(statusicon::label(1), QStringLiteral("1 agent waiting for you"));
    EXPECT_EQ(statusicon::label(2), QStringLiteral("2 agents waiting for you"));
    EXPECT_EQ(statusicon::label(3), QStringLiteral("3 agents waiting for you"));
    EXPECT_EQ(statusicon::label(120), QStringLiteral("120 agents waiting for you"));
}

TEST(StatusIcon, theBarsOfSomeDesktopsFillSymbolicIcons) {
    for (const char* const desktop : {"KDE", "XFCE", "X-Cinnamon", "ubuntu:GNOME"})
        EXPECT_TRUE(statusicon::isFilledByBar(desktop)) << desktop;
    for (const char* const desktop : {"", "LXQt", "MATE", "sway", "KDEX:X"})
        EXPECT_FALSE(statusicon::isFilledByBar(desktop)) << desktop;
}

TEST(StatusIcon, barIsDarkWhereItAlwaysIsAndElseLikeTheApplications) {
    using statusicon::barScheme;
    EXPECT_EQ(barScheme("GNOME", ColorScheme::light), ColorScheme::dark);
    EXPECT_EQ(barScheme("ubuntu:GNOME", ColorScheme::light), ColorScheme::dark);
    EXPECT_EQ(barScheme("Unity:Unity7:ubuntu", ColorScheme::light), ColorScheme::dark);
    EXPECT_EQ(barScheme("sway", ColorScheme::light), ColorScheme::dark);
    EXPECT_EQ(barScheme("KDE", ColorScheme::light), ColorScheme::light);
    EXPECT_EQ(barScheme("KDE", ColorScheme::dark), ColorScheme::dark);
    EXPECT_EQ(barScheme("X-GNOMELIKE:", ColorScheme::light), ColorScheme::light);
    EXPECT_EQ(barScheme("", ColorScheme::dark), ColorScheme::dark);
}

TEST(StatusIcon, bitmapsOfAllDigitsDiffer) {
    for (int first = 0; first < 10; ++first) {
        for (int second = first + 1; second < 10; ++second) {
            EXPECT_NE(statusicon::image(22, 80 + first, ColorScheme::light),
                      statusicon::image(22, 80 + second, ColorScheme::light))
                << first << " and " << second;
        }
    }
}

TEST(StatusIcon, everyStateOfEverySizeHasItsParts) {
    for (const ColorScheme bar : {ColorScheme::light, ColorScheme::dark}) {
        for (const int side : {16, 18, 20, 22, 24, 32, 44, 48, 64}) {
            const QImage none = statusicon::image(side, 0, bar);
            EXPECT_EQ(none.size(), QSize(side, side));
            EXPECT_EQ(pixels(none, Tokens::primary.color(bar)), 0);
            EXPECT_GT(pixels(none, Tokens::onSurface.color(bar)), side) << side;
            const QImage one = statusicon::image(side, 1, bar);
            EXPECT_GT(pixels(one, Tokens::onSurface.color(bar)), pixels(none, Tokens::onSurface.color(bar)));
            EXPECT_GE(pixels(one, Tokens::primary.color(bar)), side) << side;
            EXPECT_EQ(pixels(one, Tokens::onPrimary.color(bar)), 0);
            for (const int count : {2, 7, 38, 99, 100}) {
                const QImage many = statusicon::image(side, count, bar);
                EXPECT_GT(pixels(many, Tokens::primary.color(bar)), 2 * side) << side << " " << count;
                EXPECT_GT(pixels(many, Tokens::onPrimary.color(bar)), side / 4) << side << " " << count;
            }
            EXPECT_NE(statusicon::image(side, 1, bar), statusicon::image(side, 2, bar));
            EXPECT_EQ(statusicon::image(side, 100, bar), statusicon::image(side, 500, bar));
        }
    }
}

TEST(StatusIcon, straightEdgesFallOnWholePixels) {
    // The lip of the bell: a row that is full in its middle, between two that are not.
    struct Lip {
        int side;
        int top;
        int bottom; // the first row below
    };
    for (const Lip& lip :
         {Lip{22, 15, 17}, Lip{24, 16, 18}, Lip{32, 21, 24}, Lip{44, 30, 34}, Lip{48, 32, 36}}) {
        const QImage image = statusicon::image(lip.side, 0, ColorScheme::light);
        const QRgb ink = Tokens::onSurface.color(ColorScheme::light).rgba();
        const int middle = lip.side / 2;
        for (int y = lip.top; y < lip.bottom; ++y)
            EXPECT_EQ(image.pixel(middle, y), ink) << lip.side << " " << y;
        EXPECT_NE(image.pixel(middle, lip.top - 1), ink) << lip.side;
        EXPECT_LT(qAlpha(image.pixel(middle, lip.top - 1)), 0x90) << lip.side;
        EXPECT_LT(qAlpha(image.pixel(middle, lip.bottom)), 0x90) << lip.side;
    }
}

TEST(StatusIcon, aThinLineKeepsTheBellReadableOnTheWrongBar) {
    for (const ColorScheme guess : {ColorScheme::light, ColorScheme::dark}) {
        const ColorScheme real = guess == ColorScheme::dark ? ColorScheme::light : ColorScheme::dark;
        const QImage image = onBar(statusicon::image(22, 0, guess), barColor(real));
        int contrasting = 0;
        for (int x = 0; x < 22; ++x)
            contrasting += distance(image.pixel(x, 16), barColor(real).rgb()) > 80 ? 1 : 0;
        EXPECT_GE(contrasting, 2) << "left and right of the lip";
    }
}

TEST(StatusIcon, iconOffersTheSizesOfTraysAndDrawsEachOfThem) {
    const QIcon icon = statusicon::icon(3, ColorScheme::dark);
    const QList<QSize> sizes = icon.availableSizes();
    ASSERT_EQ(sizes.size(), 7);
    for (const int side : {16, 20, 22, 24, 32, 44, 48, 64}) {
        EXPECT_TRUE(side == 20 || sizes.contains(QSize(side, side)));
        EXPECT_EQ(icon.pixmap(QSize(side, side), 1.0)
                      .toImage()
                      .convertToFormat(QImage::Format_ARGB32_Premultiplied),
                  statusicon::image(side, 3, ColorScheme::dark))
            << side;
    }
}

} // namespace
} // namespace corvane
