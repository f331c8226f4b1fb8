#include "App/Support/BannerStates.h"
#include "App/Support/LargeText.h"
#include "App/Support/PictureComparison.h"
#include "App/Support/Pictures.h"
#include "Style/Tokens.h"
#include "Support/TestSupport.h"

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

/// The card on a plain desktop, as it looks where windows are blended.
QImage picture(BannerCard& banner, Look look, int ratio) {
    constexpr int margin = 4;
    const QSize size = banner.size().grownBy({margin, margin, margin, margin});
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(0x80, 0x90, 0xA0));
    // As on a real desktop, the window is a separate layer that is blended with what is below.
    QImage layer(banner.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    banner.setPalette(Tokens::palette(look));
    banner.render(&layer, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter(&image).drawImage(margin, margin, layer);
    return image;
}

void expectStatesAsTheyWere(const test::Variant& variant) {
    const test::LargeText size(variant.textScale);
    for (test::BannerState& state : test::bannerStates()) {
        test::expectAsItWas(
            picture(*state.banner, variant.look, variant.ratio),
            QDir(QStringLiteral(CORVANE_BANNER_PICTURES)),
            QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name));
    }
}

TEST(BannerImages, everyStateMatchesItsPicture) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";
    for (const test::Variant& variant : test::ordinaryVariants())
        expectStatesAsTheyWere(variant);
}

TEST(BannerImages, everyStateMatchesItsPictureWithHighContrastAndLargeText) {
    for (const test::Variant& variant : test::legibleVariants())
        expectStatesAsTheyWere(variant);
}

/// The parts of a banner that are separate widgets, with their names.
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
    /// Calls `check` with every part of both banners and a function that returns the banner's difference from
    /// its original picture.
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
                check(*part, [&] { return test::worstTile(picture(banner, GetParam(), 1), before); });
                ASSERT_EQ(test::worstTile(picture(banner, GetParam(), 1), before), 0);
            }
        }
    }
};

TEST_P(BannerImagesGuard, aPartThatMovesByAPixelIsDetected) {
    forEveryPart([](QWidget& part, const auto& difference) {
        for (const QPoint& step : {QPoint(1, 0), QPoint(0, 1), QPoint(-1, 0), QPoint(0, -1)}) {
            const QPoint place = part.pos();
            part.move(place + step);
            EXPECT_GT(difference(), test::largestDifference) << "by " << step.x() << "," << step.y();
            part.move(place);
        }
    });
}

TEST_P(BannerImagesGuard, aPartThatVanishesIsDetected) {
    forEveryPart([](QWidget& part, const auto& difference) {
        part.hide();
        EXPECT_GT(difference(), test::largestDifference);
        part.show();
    });
}

INSTANTIATE_TEST_SUITE_P(Appearances, BannerImagesGuard,
                         testing::Values(ColorScheme::light, ColorScheme::dark), [](const auto& scheme) {
                             return scheme.param == ColorScheme::dark ? "dark" : "light";
                         });

} // namespace
} // namespace corvane
