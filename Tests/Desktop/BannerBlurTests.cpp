// The fill of cards where the compositor blurs what lies behind them, and where it does not.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
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
        return waitUntil(10s, [&] { return std::abs(cover() - wanted) < 0.02; });
    }

    DesktopSession desktop;
    Picture wallpaper = desktop.screen().screen();
};

TEST_F(BannerBlur, theCardIsOpaqueIfNothingIsBlurred) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    // Once the fade-in is complete.
    EXPECT_TRUE(waitUntil(10s, [this] { return cover() == 1; })) << cover();
    EXPECT_TRUE(desktop.screen().blurRegion(banner().window).empty());
}

TEST_F(BannerBlur, theCardIsTranslucentOverABlurOfItsShapeWhichIsFollowed) {
    desktop.screen().announceBlur(true);
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(waitUntil(10s, [this] { return !desktop.screen().banners().empty(); }));
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

/// The largest difference between two pixels of an area, of 255.
int contrast(const Picture& picture) {
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int channel = picture.at(x, y).channels().front();
            darkest = std::min(darkest, channel);
            lightest = std::max(lightest, channel);
        }
    }
    return lightest - darkest;
}

TEST(KWinBlur, isDrawnBehindTheCardAndNowhereElse) {
    if (std::ranges::count(windowManagers(), "kwin_x11") == 0)
        GTEST_SKIP() << "KWin is not among those to test";
    DesktopSession desktop("kwin_x11", Compositor::windowManager);
    // It does not do so by itself where graphics are rendered in software.
    const auto effect = desktop.run({"gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path",
                                     "/Effects", "--method", "org.kde.kwin.Effects.loadEffect", "blur"},
                                    "effect");
    ASSERT_EQ(effect->wait(20s), 0);
    // Dark letters everywhere.
    const auto terminal =
        desktop.run({"xterm", "-fullscreen", "-bg", "white", "-fg", "black", "-e", "sh", "-c",
                     "yes '####################' | tr -d '\\n' | head -c 40000; exec cat"},
                    "xterm");
    const Rect below{400, 78, 30, 20}; // of the card, where it shows nothing itself
    ASSERT_TRUE(waitUntil(20s, [&] { return contrast(desktop.screen().screen(below)) > 200; }));
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    const Rect card{380, 8, 520, 96};
    ASSERT_TRUE(waitUntil(10s, [&] {
        const std::vector<Banner> banners = desktop.screen().banners();
        return banners.size() == 1 && banners.front().card == card;
    }));
    // Unblurred, the letters would show through a card of 0.82 with a contrast of 46.
    EXPECT_TRUE(waitUntil(10s, [&] { return contrast(desktop.screen().screen(below)) < 15; }))
        << contrast(desktop.screen().screen(below));
    EXPECT_LT(desktop.screen().screen(below).at(15, 10).channels().front(), 252) << "what is below tints it";
    const Rect outside{card.x - 60, below.y, 30, 20};
    EXPECT_GT(contrast(desktop.screen().screen(outside)), 150) << "beside the card they stay sharp";
}

} // namespace
} // namespace corvane::test
