#include "App/Support/BannerStates.h"
#include "App/Support/LargeText.h"
#include "App/Support/Pictures.h"
#include "Style/Tokens.h"
#include "Support/TestSupport.h"

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

// The pictures are compared tile by tile, so that a small part counts as much as a large one: over the whole
// picture a missing cross changes the mean by less than a tenth. Other versions of the font rasteriser shade
// the edges of letters a little differently, which stays below the limit in every tile; a part that has moved
// by a pixel, vanished or taken another colour does not.
constexpr int tileSide = 16; // in device pixels
constexpr int tileStep = 8;  // half a tile, so that no small part lies on the border of all its tiles
constexpr double largestDifference = 5; // of 255, the mean over a tile

/// The largest mean difference over a tile. The pictures have one size.
double worstTile(const QImage& first, const QImage& second) {
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

/// The card on a plain desktop, as it looks where windows are blended.
QImage picture(BannerCard& banner, Look look, int ratio) {
    constexpr int margin = 4;
    const QSize size = banner.size().grownBy({margin, margin, margin, margin});
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(0x80, 0x90, 0xA0));
    // As on a real desktop, the window is a layer of its own that is blended with what lies below.
    QImage layer(banner.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    banner.setPalette(Tokens::palette(look));
    banner.render(&layer, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter(&image).drawImage(margin, margin, layer);
    return image;
}

// With CORVANE_UPDATE_PICTURES set the pictures are written instead, for a person to look at before they are
// committed.
void expectStatesAsTheyWere(const test::Variant& variant) {
    const QDir references(QStringLiteral(CORVANE_BANNER_PICTURES));
    const QDir actual(QDir::temp().filePath(QStringLiteral("corvane-banner-pictures")));
    const bool isUpdating = std::getenv("CORVANE_UPDATE_PICTURES") != nullptr;
    const test::LargeText size(variant.textScale);
    for (test::BannerState& state : test::bannerStates()) {
        const QString name =
            QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name);
        const QImage image = picture(*state.banner, variant.look, variant.ratio);
        if (isUpdating) {
            ASSERT_TRUE(image.save(references.filePath(name)));
            continue;
        }
        const QImage reference(references.filePath(name));
        ASSERT_EQ(reference.size(), image.size()) << name.toStdString();
        EXPECT_LE(worstTile(image, reference), largestDifference) << name.toStdString();
        if (testing::Test::HasFailure()) {
            actual.mkpath(QStringLiteral("."));
            image.save(actual.filePath(name));
            FAIL() << "what was drawn is in " << actual.filePath(name).toStdString();
        }
    }
}

TEST(BannerImages, everyStateLooksAsItDid) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";
    for (const test::Variant& variant : test::ordinaryVariants())
        expectStatesAsTheyWere(variant);
}

TEST(BannerImages, everyStateLooksAsItDidWithHighContrastAndLargeText) {
    for (const test::Variant& variant : test::legibleVariants())
        expectStatesAsTheyWere(variant);
}

/// The parts of a banner that are widgets of their own, and what to call them.
std::vector<std::pair<std::string, QWidget*>> parts(BannerCard& banner) {
    std::vector<std::pair<std::string, QWidget*>> result;
    for (auto* const part : banner.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (part->isHidden()) continue;
        const QPoint place = part->pos();
        result.emplace_back(std::string(part->metaObject()->className()) + " at " +
                                std::to_string(place.x()) + "," + std::to_string(place.y()),
                            part);
    }
    return result;
}

class BannerImagesGuard : public testing::TestWithParam<ColorScheme> {
  protected:
    /// Calls `check` with every part of both banners, and how far the banner is then from its first picture.
    template <typename Check>
    void forEveryPart(Check check) {
        for (test::BannerState& state : test::bannerStates()) {
            if (state.name != "waiting" && state.name != "done") continue;
            BannerCard& banner = *state.banner;
            const QImage before = picture(banner, GetParam(), 1);
            const auto all = parts(banner);
            EXPECT_EQ(all.size(), state.name == "waiting" ? 7U : 3U);
            for (const auto& [name, part] : all) {
                SCOPED_TRACE(name);
                check(*part, [&] { return worstTile(picture(banner, GetParam(), 1), before); });
                ASSERT_EQ(worstTile(picture(banner, GetParam(), 1), before), 0);
            }
        }
    }
};

TEST_P(BannerImagesGuard, aPartThatMovesByAPixelIsNoticed) {
    forEveryPart([](QWidget& part, const auto& difference) {
        for (const QPoint& step : {QPoint(1, 0), QPoint(0, 1), QPoint(-1, 0), QPoint(0, -1)}) {
            const QPoint place = part.pos();
            part.move(place + step);
            EXPECT_GT(difference(), largestDifference) << "by " << step.x() << "," << step.y();
            part.move(place);
        }
    });
}

TEST_P(BannerImagesGuard, aPartThatVanishesIsNoticed) {
    forEveryPart([](QWidget& part, const auto& difference) {
        part.hide();
        EXPECT_GT(difference(), largestDifference);
        part.show();
    });
}

INSTANTIATE_TEST_SUITE_P(Appearances, BannerImagesGuard,
                         testing::Values(ColorScheme::light, ColorScheme::dark), [](const auto& scheme) {
                             return scheme.param == ColorScheme::dark ? "dark" : "light";
                         });

} // namespace
} // namespace corvane
