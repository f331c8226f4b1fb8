#include "App/Support/LargeText.h"
#include "App/Support/MenuBarSupport.h"
#include "App/Support/Sessions.h"
#include "BannerViews.h"
#include "Controls/AgentGlyph.h"
#include "Controls/Buttons.h"
#include "Controls/Labels.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/SessionRow.h"
#include "MenuBarView.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace corvane {
namespace {

TEST(TextScale, hasFiveStepsFromOneToOneAndAHalf) {
    const struct {
        double wanted;
        double used;
    } table[] = {
        {1, 1},
        {1.05, 1},
        {1.0625, 1.125},
        {1.125, 1.125},
        {1.2, 1.25},
        {1.25, 1.25},
        {1.375, 1.375},
        {1.4, 1.375},
        {1.49, 1.5},
        {1.5, 1.5},
        {3, 1.5},
        {0.5, 1},
        {0, 1},
        {-2, 1},
        {std::numeric_limits<double>::quiet_NaN(), 1},
        {std::numeric_limits<double>::infinity(), 1.5},
    };
    for (const auto& row : table)
        EXPECT_EQ(textscale::nearest(row.wanted), row.used) << row.wanted;
}

TEST(TextScale, reportsWhetherTheFactorHasChanged) {
    EXPECT_FALSE(textscale::setFactor(1.01));
    EXPECT_TRUE(textscale::setFactor(1.5));
    EXPECT_EQ(textscale::factor(), 1.5);
    EXPECT_FALSE(textscale::setFactor(2));
    EXPECT_TRUE(textscale::setFactor(1));
}

TEST(TextScale, fontsHaveTheNearestWholeSizeAndCutHalves) {
    EXPECT_EQ(fonts::system(13).pixelSize(), 13);
    EXPECT_EQ(fonts::system(13.75).pixelSize(), 14);
    EXPECT_EQ(fonts::system(16.25).pixelSize(), 16);
    EXPECT_EQ(fonts::system(19.5).pixelSize(), 19);
    EXPECT_EQ(fonts::monospaced(22.5).pixelSize(), 22);
}

TEST(TextScale, multipliesLengthsToWholePixels) {
    EXPECT_EQ(scaled(13), 13);
    const test::LargeText large(1.25);
    EXPECT_EQ(scaled(13), 16);
    EXPECT_EQ(scaled(16.5), 20.625);
    EXPECT_EQ(scaled(QSize(520, 96)), QSize(650, 120));
    EXPECT_EQ(scaled(QMargins(4, 8, 12, -16)), QMargins(5, 10, 15, -20));
    constexpr Scaled padding{12};
    EXPECT_EQ(2 * padding, 30);
}

class LargeBanners : public testing::TestWithParam<double> {
  protected:
    static std::unique_ptr<WaitingBanner> waiting() {
        const Date since(1'790'000'000, 0);
        return std::make_unique<WaitingBanner>(
            test::waitingSession("s", since), [since] { return since + Seconds(42); }, [] {}, [] {}, [] {});
    }

    static std::unique_ptr<DoneBanner> done() {
        return std::make_unique<DoneBanner>(test::doneSession("s", Date(1'790'000'000, 0)), [] {});
    }

    static QImage pictureOf(QWidget& widget) {
        widget.setPalette(Tokens::palette(ColorScheme::light));
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }
};

TEST_P(LargeBanners, haveTheirSizesMultiplied) {
    const test::LargeText large(GetParam());
    EXPECT_EQ(waiting()->size(), QSize(qRound(520 * GetParam()), qRound(96 * GetParam())));
    EXPECT_EQ(done()->size(), QSize(qRound(360 * GetParam()), qRound(64 * GetParam())));
}

TEST_P(LargeBanners, haveTheirFontsMultiplied) {
    const test::LargeText large(GetParam());
    const auto banner = waiting();
    (void)pictureOf(*banner);
    std::vector<double> sizes;
    for (const auto* const label : banner->findChildren<LineLabel*>())
        sizes.push_back(label->font().pixelSize());
    EXPECT_THAT(sizes, testing::Pointwise(testing::DoubleNear(0.5),
                                          {15 * GetParam(), 13 * GetParam(), 11 * GetParam()}));
    EXPECT_NEAR(banner->findChild<PrimaryButton*>()->font().pixelSize(), 13 * GetParam(), 0.5);
    EXPECT_NEAR(banner->findChild<PlainButton*>()->font().pixelSize(), 11 * GetParam(), 0.5);
    EXPECT_NEAR(banner->findChild<AgentGlyph*>()->font().pixelSize(), 16 * GetParam(), 0.5);
}

TEST_P(LargeBanners, haveTheirPartsWhereTheyWereTimesTheFactor) {
    // What is laid out by a text's height is on whole pixels.
    constexpr double tolerance = 3;
    const auto ordinary = waiting();
    (void)pictureOf(*ordinary);
    const test::LargeText large(GetParam());
    const auto banner = waiting();
    (void)pictureOf(*banner);
    const auto before = ordinary->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto after = banner->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(before.size(), after.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        SCOPED_TRACE(after[i]->metaObject()->className());
        const QRect was = before[i]->geometry();
        const QRect is = after[i]->geometry();
        EXPECT_NEAR(is.top(), was.top() * GetParam(), tolerance);
        EXPECT_NEAR(is.bottom() + 1, (was.bottom() + 1) * GetParam(), tolerance);
        EXPECT_TRUE(banner->rect().contains(is));
    }
    const QRect glyph = banner->findChild<AgentGlyph*>()->geometry();
    EXPECT_EQ(glyph.size(), QSize(scaled(36), scaled(36)));
    EXPECT_EQ(glyph.left(), scaled(16));
    const QRect jump = banner->findChild<PrimaryButton*>()->geometry();
    EXPECT_EQ(jump.height(), scaled(28));
    EXPECT_EQ(jump.right() + 1, banner->width() - scaled(16));
}

TEST_P(LargeBanners, keepTheWidthOfTheirLines) {
    const test::LargeText large(GetParam());
    const auto banner = waiting();
    const QImage image = pictureOf(*banner);
    const QColor primary = Tokens::primary.color(ColorScheme::light);
    const int middle = image.width() / 2;
    // One and a half pixels, whatever the text's size.
    EXPECT_EQ(image.pixelColor(middle, 0), primary);
    EXPECT_NE(image.pixelColor(middle, 1), primary);
    EXPECT_GT(image.pixelColor(middle, 2).lightness(), 250);
}

INSTANTIATE_TEST_SUITE_P(Factors, LargeBanners, testing::Values(1.0, 1.125, 1.25, 1.375, 1.5),
                         [](const auto& factor) { return std::to_string(qRound(factor.param * 1000)); });

class LargePanel : public testing::Test {
  protected:
    MenuBarView& view() {
        if (!view_) {
            view_ = std::make_unique<MenuBarView>(world.model(),
                                                  MenuBarView::Actions{[] {}, [](const QUrl&) {}, [] {}});
            view_->resize(view_->sizeHint());
            (void)view_->grab();
        }
        return *view_;
    }
    test::MenuBarWorld world;

  private:
    std::unique_ptr<MenuBarView> view_;
};

TEST_F(LargePanel, hasItsWidthRowsAndScrolledHeightMultiplied) {
    const test::LargeText large(1.5);
    world.connect();
    for (int i = 0; i < 8; ++i)
        world.waits(std::string(1, static_cast<char>('a' + i)));
    EXPECT_EQ(view().width(), 510);
    EXPECT_EQ(view().list().height(), 432);
    for (const SessionRow* const row : view().list().rows()) {
        EXPECT_EQ(row->height(), 72);
        EXPECT_EQ(row->findChildren<LineLabel*>().front()->font().pixelSize(), 19);
    }
    EXPECT_TRUE(view().rect().contains(test::button(view(), "Quit")->geometry()));
}

TEST_F(LargePanel, atTheOrdinarySizeEveryFigureIsExact) {
    world.connect();
    world.waits("a");
    EXPECT_EQ(view().width(), 340);
    EXPECT_EQ(view().list().height(), 48);
    EXPECT_EQ(view().list().rows().front()->findChildren<LineLabel*>().front()->font().pixelSize(), 13);
}

} // namespace
} // namespace corvane
