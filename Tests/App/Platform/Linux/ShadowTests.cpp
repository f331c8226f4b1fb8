#include "Platform/Linux/Shadow.h"
#include "Style/Shapes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvane {
namespace {

struct Layer {
    double offset;
    double deviation;
    double opacity;
};
struct Look {
    ColorScheme scheme;
    Layer wide;
    Layer narrow;
};
constexpr Look looks[] = {
    {ColorScheme::light, {8, 12, 0.16}, {1, 1.5, 0.12}},
    {ColorScheme::dark, {8, 12, 0.44}, {1, 1.5, 0.36}},
};

// So large that only the nearest side affects the shadow at its middle.
constexpr QSize cardSize{400, 200};

/// How dark a layer is at `distance` outside of a long side; `offset` is its shift in that direction.
double layerAt(const Layer& layer, double distance, double offset) {
    return layer.opacity * std::erfc((distance - offset) / layer.deviation / std::sqrt(2.0)) / 2;
}

/// The alpha, 0 to 255, of both layers. `direction`: 1 below the card, -1 above, 0 beside it.
double alphaAt(const Look& look, double distance, int direction) {
    return 255 * (1 - (1 - layerAt(look.wide, distance, direction * look.wide.offset)) *
                          (1 - layerAt(look.narrow, distance, direction * look.narrow.offset)));
}

TEST(LinuxShadow, cardShadowHasItsTwoLayersInBothAppearances) {
    for (const Look& look : looks) {
        for (const int ratio : {1, 2}) {
            const QImage shadow = cardShadow(shapes::continuousRoundedRect(QRectF(QPointF(), cardSize), 16),
                                             cardSize, look.scheme, ratio);
            ASSERT_EQ(shadow.size(), QSize(24 + 400 + 24, 16 + 200 + 32) * ratio);
            EXPECT_EQ(shadow.devicePixelRatio(), ratio);
            const auto alpha = [&](int x, int y) { return qAlpha(shadow.pixel(x, y)); };
            const int middleX = shadow.width() / 2;
            const int middleY = (16 + 100) * ratio;
            // Three means approximate the Gaussian of each layer.
            constexpr double tolerance = 6; // of 255
            for (const int step : {0, 1, 2, 4, 8, 14}) {
                const int pixel = step * ratio;
                const double distance = (pixel + 0.5) / ratio;
                EXPECT_NEAR(alpha(middleX, (16 + 200) * ratio + pixel), alphaAt(look, distance, 1), tolerance)
                    << step << " below";
                EXPECT_NEAR(alpha(middleX, 16 * ratio - 1 - pixel), alphaAt(look, distance, -1), tolerance)
                    << step << " above";
                EXPECT_NEAR(alpha(24 * ratio - 1 - pixel, middleY), alphaAt(look, distance, 0), tolerance)
                    << step << " to the left";
                EXPECT_NEAR(alpha((24 + 400) * ratio + pixel, middleY), alphaAt(look, distance, 0), tolerance)
                    << step << " to the right";
            }
        }
    }
}

TEST(LinuxShadow, noShadowIsDrawnUnderTheCard) {
    const QPainterPath outline = shapes::continuousRoundedRect(QRectF(QPointF(), cardSize), 16);
    for (const Look& look : looks) {
        const QImage shadow = cardShadow(outline, cardSize, look.scheme, 1);
        int inside = 0;
        for (int y = 0; y < cardSize.height(); ++y) {
            for (int x = 0; x < cardSize.width(); ++x) {
                // The whole pixel must be on the card: a part of the shadow is visible at the corners.
                if (!outline.contains(QRectF(x, y, 1, 1))) continue;
                ++inside;
                ASSERT_EQ(qAlpha(shadow.pixel(24 + x, 16 + y)), 0) << x << "," << y;
            }
        }
        EXPECT_GT(inside, 400 * 200 * 9 / 10);
        // A corner of the card's rectangle is outside of its outline and in the shadow.
        EXPECT_GT(qAlpha(shadow.pixel(24, 16 + 199)), 0);
    }
}

} // namespace
} // namespace corvane
