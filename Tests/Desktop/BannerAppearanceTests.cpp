// Banners follow the appearance and the reduced-motion setting of the desktop's portal.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr Color lightOutline{0x8A5300};
constexpr Color darkOutline{0xFFC15A};
constexpr int tolerance = 28; // the wallpaper and the shadow shine through a little

class BannerAppearance : public testing::Test {
  protected:
    void SetUp() override {
        portal = desktop.run({CORVANE_PORTAL}, "portal");
        // It is on the bus once it accepts a setting.
        ASSERT_TRUE(waitUntil(20s, [&] { return tell("none", "none", "0"); }));
    }

    bool tell(const std::string& group, const std::string& key, const std::string& value) {
        return desktop.run({CORVANE_PORTAL, "set", group, key, value}, "tell")->wait(20s) == 0;
    }
    void setColorScheme(const std::string& value) {
        ASSERT_TRUE(tell("org.freedesktop.appearance", "color-scheme", value));
    }
    void setAnimations(const std::string& value) {
        ASSERT_TRUE(tell("org.gnome.desktop.interface", "enable-animations", value));
    }

    void raiseBanner(const char* session) {
        desktop.claude("Notification-permission_prompt", session, "shop");
    }

    testing::AssertionResult haveOutline(Color color) {
        Color seen;
        const bool isThere = waitUntil(2s, [&] {
            const std::vector<Banner> banners = desktop.screen().banners();
            const Picture screen = desktop.screen().screen();
            return std::ranges::all_of(banners, [&](const Banner& banner) {
                seen = screen.at(banner.card.middleX(), banner.card.y);
                return seen.isNear(color, tolerance);
            });
        });
        if (isThere) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "an outline is " << std::hex << seen.rgb;
    }

    DesktopSession desktop;
    std::unique_ptr<ChildProcess> portal;
};

TEST_F(BannerAppearance, standingBannersTurnDarkAndLightAgainAsThePortalTells) {
    desktop.startApplication();
    raiseBanner("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    raiseBanner("b");
    ASSERT_TRUE(desktop.shows(2, 0));
    EXPECT_TRUE(haveOutline(lightOutline));
    setColorScheme("1");
    EXPECT_TRUE(haveOutline(darkOutline));
    EXPECT_TRUE(desktop.shows(2, 0));
    setColorScheme("2");
    EXPECT_TRUE(haveOutline(lightOutline));
    EXPECT_TRUE(desktop.shows(2, 0));
}

TEST_F(BannerAppearance, isDarkFromTheStartOnADarkDesktop) {
    setColorScheme("1");
    desktop.startApplication();
    raiseBanner("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(haveOutline(darkOutline));
}

TEST_F(BannerAppearance, bannerFadesInPlaceWhereTheUserWantsNoAnimations) {
    setAnimations("false");
    desktop.startApplication();
    constexpr Rect card{380, 8, 520, 96};
    const Color wallpaper = desktop.screen().screen(fadeProbe(card)).at(0, 0);
    raiseBanner("a");
    const auto samples = recordFade(desktop.screen(), card, wallpaper, [](const auto& seen) {
        return seen.back().isMapped && seen.back().opacity > 0.98;
    });
    ASSERT_GT(samples.back().opacity, 0.98);
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_GE(stepsBetween(samples), 4U) << "it was to fade";
    for (const FadeSample& sample : samples) {
        const int top = sample.isMapped ? sample.top : card.y;
        ASSERT_EQ(top, card.y) << "it slid";
    }
}

} // namespace

} // namespace corvane::test
