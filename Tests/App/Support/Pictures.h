#pragma once

#include "Style/Tokens.h"

#include <QApplication>
#include <QImage>
#include <QString>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

namespace corvane::test {

/// One of the ways in which the same state is drawn, and the end of the picture's name.
struct Variant {
    QString name;
    Look look;
    int ratio = 1;
    double textScale = 1;
};

/// Both appearances with ordinary contrast, at one and two device pixels a pixel.
inline std::vector<Variant> ordinaryVariants() {
    return {{QStringLiteral("light-1x"), ColorScheme::light, 1},
            {QStringLiteral("light-2x"), ColorScheme::light, 2},
            {QStringLiteral("dark-1x"), ColorScheme::dark, 1},
            {QStringLiteral("dark-2x"), ColorScheme::dark, 2}};
}

/// What people who see less well ask their desktop for.
inline std::vector<Variant> legibleVariants() {
    return {{QStringLiteral("light-high-contrast-1x"), {ColorScheme::light, Contrast::high}},
            {QStringLiteral("dark-high-contrast-1x"), {ColorScheme::dark, Contrast::high}},
            {QStringLiteral("light-text-1.25-1x"), ColorScheme::light, 1, 1.25},
            {QStringLiteral("dark-text-1.5-1x"), ColorScheme::dark, 1, 1.5}};
}

/// What the galleries show.
inline std::vector<Variant> galleryVariants() {
    std::vector<Variant> variants = ordinaryVariants();
    for (const Variant& legible : legibleVariants()) {
        variants.push_back(legible);
        Variant sharp = legible;
        sharp.name.replace(QStringLiteral("-1x"), QStringLiteral("-2x"));
        sharp.ratio = 2;
        variants.push_back(sharp);
    }
    return variants;
}

/// How far two pictures of the same size lie apart.
struct Difference {
    double mean = 0;         ///< of 255, over all pixels
    double visibleShare = 0; ///< the share of pixels that differ by more than a shade

    /// Whether someone would see it. Other versions of the font rasteriser shade the edges of letters a
    /// little differently; a part that moves by a pixel, or takes another colour, differs by far more.
    [[nodiscard]] bool isNoticeable() const { return mean > 0.6 || visibleShare > 0.004; }
};

inline Difference difference(const QImage& first, const QImage& second) {
    constexpr int visibleDifference = 48; // of 255, in one pixel
    double sum = 0;
    double visible = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            const QRgb a = first.pixel(x, y);
            const QRgb b = second.pixel(x, y);
            const int most = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                       std::abs(qBlue(a) - qBlue(b))});
            sum += most;
            visible += most > visibleDifference ? 1 : 0;
        }
    }
    const double count = static_cast<double>(first.width()) * first.height();
    return {sum / count, visible / count};
}

/// With the 256 commonest colours only: a third of the size, and no difference that anyone sees.
inline QImage reduced(const QImage& image) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    std::vector<std::pair<int, QRgb>> byCount;
    byCount.reserve(counts.size());
    for (const auto& [color, count] : counts)
        byCount.emplace_back(count, color);
    std::sort(byCount.rbegin(), byCount.rend());
    QList<QRgb> table;
    for (std::size_t i = 0; i < std::min<std::size_t>(byCount.size(), 256); ++i)
        table.append(byCount.at(i).second);
    return image.convertToFormat(QImage::Format_Indexed8, table, Qt::ThresholdDither);
}

/// For its lifetime, letters are set where they belong and not on whole pixels, as with the light hinting
/// that desktops come with; the offscreen platform knows only full hinting and none.
class FractionalMetrics {
  public:
    FractionalMetrics() {
        QFont font = font_;
        font.setHintingPreference(QFont::PreferNoHinting);
        QApplication::setFont(font);
    }
    FractionalMetrics(const FractionalMetrics&) = delete;
    FractionalMetrics& operator=(const FractionalMetrics&) = delete;
    ~FractionalMetrics() { QApplication::setFont(font_); }

  private:
    QFont font_ = QApplication::font();
};

/// The widget in this look, at `ratio` device pixels a pixel.
inline QImage pictureOf(QWidget& widget, Look look, int ratio) {
    widget.setPalette(Tokens::palette(look));
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Tokens::background.color(look));
    widget.render(&image);
    return image;
}

} // namespace corvane::test
