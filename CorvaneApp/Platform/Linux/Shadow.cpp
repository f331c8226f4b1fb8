#include "Platform/Linux/Shadow.h"

#include <QBitmap>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace corvane {

namespace {

struct Layer {
    qreal offset; // downwards, in device-independent pixels
    qreal blur;   // twice the standard deviation
    qreal opacity;
};

std::array<Layer, 2> layers(ColorScheme scheme) {
    if (scheme == ColorScheme::dark) return {{{8, 24, 0.44}, {1, 3, 0.36}}};
    return {{{8, 24, 0.16}, {1, 3, 0.12}}};
}

// A grid of coverages, 0 to 1.
struct Mask {
    int width;
    int height;
    std::vector<float> values;
};

Mask rasterized(const QPainterPath& path, int width, int height) {
    QImage image(width, height, QImage::Format_Alpha8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, Tokens::shadow(1));
    painter.end();

    Mask mask{width, height, {}};
    mask.values.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* const line = image.constScanLine(y);
        for (int x = 0; x < width; ++x)
            mask.values.push_back(static_cast<float>(line[x]) / 255);
    }
    return mask;
}

// The mean over `2 * radius + 1` neighbours along a line of `count` values, `stride` apart; zero outside.
void boxBlur(float* line, int count, int stride, int radius, std::vector<float>& scratch) {
    scratch.assign(static_cast<std::size_t>(count), 0);
    const auto at = [&](int i) {
        return i >= 0 && i < count ? line[static_cast<std::ptrdiff_t>(i) * stride] : 0;
    };
    double sum = 0;
    for (int i = -radius; i < radius; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        sum += at(i + radius);
        scratch[static_cast<std::size_t>(i)] = static_cast<float>(sum / (2 * radius + 1));
        sum -= at(i - radius);
    }
    for (int i = 0; i < count; ++i)
        line[static_cast<std::ptrdiff_t>(i) * stride] = scratch[static_cast<std::size_t>(i)];
}

// Three successive box blurs approximate a Gaussian to within a hundredth, at a cost independent of its
// width.
void gaussianBlur(Mask& mask, qreal deviation) {
    constexpr int passes = 3;
    const auto radius =
        static_cast<int>(std::lround((std::sqrt(12 * deviation * deviation / passes + 1) - 1) / 2));
    if (radius < 1) return;
    std::vector<float> scratch;
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < mask.height; ++y) {
            boxBlur(mask.values.data() + static_cast<std::ptrdiff_t>(y) * mask.width, mask.width, 1, radius,
                    scratch);
        }
        for (int x = 0; x < mask.width; ++x) {
            boxBlur(mask.values.data() + x, mask.height, mask.width, radius, scratch);
        }
    }
}

} // namespace

QImage cardShadow(const QPainterPath& outline, QSize cardSize, ColorScheme scheme, qreal devicePixelRatio) {
    const QSizeF whole = QSizeF(cardSize.grownBy(shadowMargins)) * devicePixelRatio;
    const auto width = static_cast<int>(std::ceil(whole.width()));
    const auto height = static_cast<int>(std::ceil(whole.height()));
    const auto placed = [&](qreal offset) {
        QTransform transform = QTransform::fromScale(devicePixelRatio, devicePixelRatio);
        transform.translate(shadowMargins.left(), shadowMargins.top() + offset);
        return rasterized(transform.map(outline), width, height);
    };

    const Mask card = placed(0);
    std::vector<float> clear(card.values.size(), 1); // the transparency of all layers so far
    for (const Layer& layer : layers(scheme)) {
        Mask mask = placed(layer.offset);
        gaussianBlur(mask, layer.blur / 2 * devicePixelRatio);
        for (std::size_t i = 0; i < clear.size(); ++i) {
            clear[i] *= 1 - static_cast<float>(layer.opacity) * mask.values[i];
        }
    }

    QImage image(width, height, QImage::Format_Alpha8);
    image.setDevicePixelRatio(devicePixelRatio);
    std::size_t i = 0;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* const line = image.scanLine(y);
        for (int x = 0; x < width; ++x, ++i) {
            const float alpha = (1 - clear[i]) * (1 - card.values[i]);
            line[x] = static_cast<std::uint8_t>(std::lround(alpha * 255));
        }
    }
    return image;
}

QRegion inPixels(const QPainterPath& outline, qreal devicePixelRatio) {
    const QPainterPath shape = QTransform::fromScale(devicePixelRatio, devicePixelRatio).map(outline);
    const QPoint end = shape.boundingRect().toAlignedRect().bottomRight();
    QBitmap bitmap(end.x() + 1, end.y() + 1);
    bitmap.clear();
    QPainter(&bitmap).fillPath(shape, Qt::color1);
    return bitmap;
}

} // namespace corvane
