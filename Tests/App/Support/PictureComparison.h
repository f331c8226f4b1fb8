#pragma once

#include <QDir>
#include <QImage>
#include <QString>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <utility>

namespace corvane::test {

// Pictures are compared tile by tile, so that a small part counts as much as a large one: over a whole
// picture a missing cross changes the mean by less than a tenth. Other versions of the font rasteriser shade
// the edges of letters a little differently, which stays below the limit in every tile; a part that has moved
// by a pixel, vanished or changed its colour exceeds it.
constexpr int tileSide = 16; // in device pixels
constexpr int tileStep = 8;  // half a tile, so that no small part is on the border of all its tiles
constexpr double largestDifference = 5; // of 255, the mean over a tile

/// The largest mean difference over a tile. The pictures must have the same size.
inline double worstTile(const QImage& first, const QImage& second) {
    double worst = 0;
    for (int top = 0; top < first.height(); top += tileStep) {
        for (int left = 0; left < first.width(); left += tileStep) {
            const QRect tile = QRect(left, top, tileSide, tileSide) & first.rect();
            double sum = 0;
            for (int y = tile.top(); y <= tile.bottom(); ++y) {
                for (int x = tile.left(); x <= tile.right(); ++x) {
                    const QRgb a = first.pixel(x, y);
                    const QRgb b = second.pixel(x, y);
                    sum += std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                     std::abs(qBlue(a) - qBlue(b))});
                }
            }
            worst = std::max(worst, sum / (tileSide * tileSide));
        }
    }
    return worst;
}

/// The picture with at most 256 colours, a third of the file size, or unchanged where the reduction would be
/// visible. The most common of similar colours replaces the others.
inline QImage reduced(const QImage& image) {
    constexpr int shade = 8;
    constexpr std::size_t mostColors = 256;
    constexpr double largestLoss = 1; // of 255, the mean over a tile
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    const auto rounded = [](int channel) { return (channel + shade / 2) / shade; };
    std::map<QRgb, std::pair<int, QRgb>> commonest;
    for (const auto& [color, count] : counts) {
        auto& known = commonest[qRgb(rounded(qRed(color)), rounded(qGreen(color)), rounded(qBlue(color)))];
        known = std::max(known, std::pair(count, color));
    }
    if (commonest.size() > mostColors) return image;
    QList<QRgb> table;
    for (const auto& [rough, known] : commonest)
        table.append(known.second);
    QImage result = image.convertToFormat(QImage::Format_Indexed8, table, Qt::ThresholdDither);
    return worstTile(result, image) <= largestLoss ? result : image;
}

/// Expects the picture to match the reference of this name, a file in `references`. One that does not is
/// saved in the build folder. With CORVANE_UPDATE_PICTURES set, the reference is written instead, to be
/// reviewed before it is committed.
inline void expectAsItWas(const QImage& image, const QDir& references, const QString& name) {
    if (std::getenv("CORVANE_UPDATE_PICTURES") != nullptr) {
        ASSERT_TRUE(reduced(image).save(references.filePath(name), nullptr, 0));
        return;
    }
    const QImage reference(references.filePath(name));
    ASSERT_EQ(reference.size(), image.size()) << name.toStdString();
    const double difference = worstTile(image, reference);
    if (difference <= largestDifference) return;
    const QDir actual(QStringLiteral(CORVANE_FAILED_PICTURES));
    actual.mkpath(QStringLiteral("."));
    image.save(actual.filePath(name));
    ADD_FAILURE() << name.toStdString() << " differs by " << difference << "; what was drawn is in "
                  << actual.filePath(name).toStdString();
}

} // namespace corvane::test
