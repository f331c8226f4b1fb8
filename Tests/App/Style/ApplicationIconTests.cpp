#include "Style/ApplicationIcon.h"
#include "Style/Shapes.h"
#include "Support/TestSupport.h"

#include <QLinearGradient>
#include <QPainter>
#include <QProcess>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <string>

namespace corvane {
namespace {

int distance(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

/// An icon on a plain background.
QImage onGround(const QImage& icon, QRgb ground) {
    QImage result(icon.size(), QImage::Format_RGB32);
    result.fill(ground);
    QPainter(&result).drawImage(0, 0, icon);
    return result;
}

/// The difference of two pictures of the same size on white and on black: the worst pixel, and the average.
struct Difference {
    int worst = 0;
    double average = 0;
};

Difference difference(const QImage& a, const QImage& b) {
    Difference result;
    for (const QRgb ground : {qRgb(255, 255, 255), qRgb(0, 0, 0)}) {
        const QImage left = onGround(a, ground);
        const QImage right = onGround(b, ground);
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const int here = distance(left.pixel(x, y), right.pixel(x, y));
                result.worst = std::max(result.worst, here);
                result.average += here / 2.0 / a.width() / a.height();
            }
        }
    }
    return result;
}

QPainterPath raven(bool isSmall) {
    QPainterPath path({4, 62});
    if (isSmall) {
        path.lineTo(4, 50);
        path.cubicTo(10, 46, 12.5, 39, 13, 31);
        path.cubicTo(13.6, 19.5, 21, 12, 30.5, 12);
        path.cubicTo(37, 12, 42, 15, 44.5, 19.5);
        path.cubicTo(50, 20, 55.5, 23.5, 57.5, 29);
        path.cubicTo(52, 33.5, 47.5, 35, 42.5, 35);
        path.cubicTo(42, 43, 45, 52, 51, 62);
    } else {
        path.lineTo(4, 51);
        path.cubicTo(10.5, 46.5, 13.6, 39.5, 14, 31.4);
        path.cubicTo(14.5, 20.4, 21.8, 13, 31, 13);
        path.cubicTo(37.2, 13, 42, 15.8, 44.6, 20.4);
        path.cubicTo(49.8, 20.8, 54.6, 24, 56.6, 29);
        path.cubicTo(51.8, 33, 47.2, 34.6, 42.4, 34.6);
        path.cubicTo(41.9, 43.5, 44.8, 52.6, 50.6, 62);
    }
    path.closeSubpath();
    return path;
}

/// The icon drawn independently from the designer's numbers: the whole raven, clipped by the tile.
QImage drawnByHand(int side, int margin) {
    const bool isSmall = side <= 24;
    const QRectF tile(4, 4, 56, 56);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(margin, margin);
    painter.scale((side - 2 * margin) / tile.width(), (side - 2 * margin) / tile.height());
    painter.translate(-tile.topLeft());
    QLinearGradient amber(tile.topLeft(), tile.bottomLeft());
    amber.setColorAt(0, QColor(0xFF, 0xD0, 0x80));
    amber.setColorAt(1, QColor(0xFF, 0xB6, 0x40));
    const QPainterPath shape = shapes::continuousRoundedRect(tile, 15);
    painter.fillPath(shape, amber);
    painter.setClipPath(shape);
    painter.fillPath(raven(isSmall), QColor(0x3A, 0x24, 0x00));
    QPainterPath eye;
    if (isSmall) {
        eye.addEllipse(QPointF(33, 24), 4.4, 4.4);
    } else {
        eye.addEllipse(QPointF(34, 24), 3.4, 3.4);
    }
    painter.fillPath(eye, QColor(0xFF, 0xC1, 0x5A));
    return image;
}

struct Size {
    int side;
    int margin;
};

// Every size that is shown or shipped anywhere.
constexpr std::array<Size, 12> sizes{{{16, 1},
                                      {20, 1},
                                      {22, 1},
                                      {24, 2},
                                      {25, 2},
                                      {32, 2},
                                      {48, 3},
                                      {64, 4},
                                      {128, 8},
                                      {256, 16},
                                      {512, 32},
                                      {1024, 64}}};

TEST(ApplicationIcon, everySizeIsDrawnByTheDesignersFigures) {
    for (const Size& size : sizes) {
        const QImage drawn = applicationicon::image(size.side);
        ASSERT_EQ(drawn.size(), QSize(size.side, size.side));
        const Difference found = difference(drawn, drawnByHand(size.side, size.margin));
        // Clipping the raven shades its edge a little differently.
        EXPECT_LE(found.worst, 32) << size.side;
        EXPECT_LE(found.average, 0.4) << size.side;
    }
}

TEST(ApplicationIcon, theSimplerDrawingEndsAt24Pixels) {
    // In it, the raven's breast and beak are larger.
    const QImage small = applicationicon::image(24);
    const QImage normal = applicationicon::image(25);
    EXPECT_GT(difference(small, drawnByHand(25, 2).scaled(24, 24)).worst, 40);
    EXPECT_LE(difference(small, drawnByHand(24, 2)).worst, 32);
    EXPECT_LE(difference(normal, drawnByHand(25, 2)).worst, 32);
}

TEST(ApplicationIcon, theTileFillsWholePixelsInsideItsMargin) {
    for (const Size& size : sizes) {
        const QImage image = applicationicon::image(size.side);
        const int middle = size.side / 2;
        const int last = size.side - 1 - size.margin;
        for (const QPoint& inside : {QPoint(middle, size.margin), QPoint(middle, last),
                                     QPoint(size.margin, middle), QPoint(last, middle)}) {
            EXPECT_EQ(qAlpha(image.pixel(inside)), 255)
                << size.side << " at " << inside.x() << "," << inside.y();
        }
        for (int i = 0; i < size.side; ++i) {
            for (const QPoint& outside : {QPoint(i, size.margin - 1), QPoint(i, last + 1),
                                          QPoint(size.margin - 1, i), QPoint(last + 1, i)}) {
                EXPECT_EQ(qAlpha(image.pixel(outside)), 0)
                    << size.side << " at " << outside.x() << "," << outside.y();
            }
        }
    }
}

TEST(ApplicationIcon, hasTheDesignersPixels) {
    // Cells of 48 pixels: the sizes below on white, and again on a dark background.
    const QImage sheet(QStringLiteral(CORVANE_ICON_PICTURE));
    ASSERT_EQ(sheet.size(), QSize(240, 96));
    for (const int row : {0, 1}) {
        int column = 0;
        for (const int side : {16, 22, 24, 32, 48}) {
            const QImage wanted = sheet.copy(48 * column++, 48 * row, side, side);
            const QImage drawn = onGround(applicationicon::image(side), wanted.pixel(0, 0));
            // Another renderer shades edges a little differently, and the picture has only 256 colours.
            const Difference found = difference(drawn, wanted);
            EXPECT_LE(found.worst, 70) << side << ", row " << row;
            EXPECT_LE(found.average, 5) << side << ", row " << row;
        }
    }
}

TEST(ApplicationIcon, windowsGetTheSizesOfTaskBars) {
    const QIcon icon = applicationicon::icon();
    for (const int side : {16, 22, 24, 32, 48, 64, 128}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(side, side))) << side;
        EXPECT_EQ(icon.pixmap(QSize(side, side), 1.0)
                      .toImage()
                      .convertToFormat(QImage::Format_ARGB32_Premultiplied),
                  applicationicon::image(side))
            << side;
    }
}

/// The files below `folder`, by their path in it.
std::set<std::string> filesIn(const std::filesystem::path& folder) {
    std::set<std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) result.insert(std::filesystem::relative(entry.path(), folder).string());
    }
    return result;
}

int drawIcon(const std::string& kind, const std::filesystem::path& folder) {
    return QProcess::execute(QStringLiteral(CORVANE_DRAW_ICON),
                             {QString::fromStdString(kind), QString::fromStdString(folder.string())});
}

void expectPicture(const std::filesystem::path& file, int side) {
    QImage picture(QString::fromStdString(file.string()));
    picture.setDevicePixelRatio(1); // as Qt takes it from "@2x"
    ASSERT_EQ(picture.size(), QSize(side, side)) << file;
    // Files hold unpremultiplied colours, which are rounded.
    EXPECT_LE(difference(picture, applicationicon::image(side)).worst, 1) << file;
}

TEST(DrawIcon, makesTheTenPicturesOfAnIconset) {
    const test::ScratchFolder scratch;
    const std::filesystem::path folder = scratch.path() / "Corvane.iconset";
    ASSERT_EQ(drawIcon("iconset", folder), 0);
    std::set<std::string> names;
    for (const int points : {16, 32, 128, 256, 512}) {
        for (const int scale : {1, 2}) {
            const std::string name = "icon_" + std::to_string(points) + "x" + std::to_string(points) +
                                     (scale == 2 ? "@2x" : "") + ".png";
            names.insert(name);
            expectPicture(folder / name, scale * points);
        }
    }
    EXPECT_EQ(filesIn(folder), names);
}

TEST(DrawIcon, makesThePicturesOfAnIconTheme) {
    const test::ScratchFolder scratch;
    ASSERT_EQ(drawIcon("hicolor", scratch.path()), 0);
    std::set<std::string> names;
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const std::string name = std::to_string(side) + "x" + std::to_string(side) + "/apps/corvane.png";
        names.insert(name);
        expectPicture(scratch.path() / name, side);
    }
    EXPECT_EQ(filesIn(scratch.path()), names);
}

TEST(DrawIcon, failsIfItCannotWrite) {
    const test::ScratchFolder scratch;
    test::writeFile(scratch.path() / "file", "");
    EXPECT_EQ(drawIcon("iconset", scratch.path() / "file"), 1);
    EXPECT_EQ(drawIcon("other", scratch.path()), 2);
}

} // namespace
} // namespace corvane
