// The fill of cards where the compositor blurs what lies behind them, and where it does not.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

class BannerBlur : public testing::Test {
  protected:
    [[nodiscard]] Banner banner() { return desktop.screen().banners().at(0); }

    /// How much of the wallpaper the card covers.
    [[nodiscard]] double cover() {
        const Rect probe = fadeProbe(banner().card);
        const double seen = desktop.screen().screen(probe).at(0, 0).channels().front();
        const double below = wallpaper.at(probe.x, probe.y).channels().front();
        return (seen - below) / (255 - below);
    }
    [[nodiscard]] bool covers(double wanted) {
        return waitUntil(5s, [&] { return std::abs(cover() - wanted) < 0.02; });
    }

    DesktopSession desktop;
    Picture wallpaper = desktop.screen().screen();
};

TEST_F(BannerBlur, theCardIsOpaqueWhereNothingIsBlurred) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    // Once it has faded in to the last step.
    EXPECT_TRUE(waitUntil(2s, [this] { return cover() == 1; })) << cover();
    EXPECT_TRUE(desktop.screen().blurRegion(banner().window).empty());
}

TEST_F(BannerBlur, theCardIsTranslucentOverABlurOfItsShapeWhichIsFollowed) {
    desktop.screen().announceBlur(true);
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(waitUntil(5s, [this] { return !desktop.screen().banners().empty(); }));
    ASSERT_TRUE(covers(0.82)) << cover();
    const Banner shown = banner();
    const std::vector<Rect> region = desktop.screen().blurRegion(shown.window);
    ASSERT_FALSE(region.empty());
    int left = shown.frame.width;
    int top = shown.frame.height;
    int right = 0;
    int bottom = 0;
    int area = 0;
    for (const Rect& part : region) {
        left = std::min(left, part.x);
        top = std::min(top, part.y);
        right = std::max(right, part.x + part.width);
        bottom = std::max(bottom, part.y + part.height);
        area += part.width * part.height;
    }
    EXPECT_EQ(left, shown.card.x - shown.frame.x);
    EXPECT_EQ(top, shown.card.y - shown.frame.y);
    EXPECT_EQ(right - left, shown.card.width);
    EXPECT_EQ(bottom - top, shown.card.height);
    EXPECT_LT(area, shown.card.width * shown.card.height) << "without its corners";
    EXPECT_GT(area, shown.card.width * shown.card.height - 400);

    desktop.screen().announceBlur(false);
    EXPECT_TRUE(covers(1)) << cover();
    EXPECT_TRUE(desktop.screen().blurRegion(shown.window).empty());
    desktop.screen().announceBlur(true);
    EXPECT_TRUE(covers(0.82)) << cover();
}

} // namespace
} // namespace corvane::test
