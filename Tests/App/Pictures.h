#pragma once

#include "Tokens.h"

#include <QApplication>
#include <QImage>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace corvane::test {

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

/// The widget in this appearance, at `ratio` device pixels a pixel.
inline QImage pictureOf(QWidget& widget, ColorScheme scheme, int ratio) {
    widget.setPalette(Tokens::palette(scheme));
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Tokens::background.color(scheme));
    widget.render(&image);
    return image;
}

} // namespace corvane::test
