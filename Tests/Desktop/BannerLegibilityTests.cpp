// Visible banners follow the contrast and the text size of the desktop's portal.

#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr Color surface{0xFFFFFF};
constexpr Rect ordinaryCard{380, 8, 520, 96};

class BannerLegibility : public testing::Test {
  protected:
    void SetUp() override {
        portal_ = desktop.run({CORVANE_PORTAL}, "portal");
        ASSERT_TRUE(waitUntil(20s, [&] { return set("none", "none", "0"); }));
    }

    bool set(const std::string& group, const std::string& key, const std::string& value) {
        return desktop.run({CORVANE_PORTAL, "set", group, key, value}, "set")->wait(20s) == 0;
    }

    void startWithBanner() {
        desktop.startApplication();
        desktop.claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(desktop.shows(1, 0));
    }

    /// The colour of the card beside its texts, where the wallpaper would shine through.
    Color fill() {
        const Banner banner = desktop.screen().banners().at(0);
        return desktop.screen().screen().at(banner.card.middleX(), banner.card.y + 6);
    }
    /// The colour right below the card, where its shadow is.
    Color below() { return desktop.screen().screen().at(ordinaryCard.middleX(), 8 + 96 + 6); }

    testing::AssertionResult hasCard(Rect wanted) {
        Rect seen;
        const bool isThere = waitUntil(10s, [&] {
            const auto banners = desktop.screen().banners();
            if (banners.size() != 1) return false;
            seen = banners.front().card;
            return seen == wanted;
        });
        if (isThere) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the card is at " << seen.x << "," << seen.y << " and "
                                           << seen.width << " x " << seen.height;
    }

    DesktopSession desktop;

  private:
    std::unique_ptr<ChildProcess> portal_;
};

TEST_F(BannerLegibility, visibleBannerTurnsOpaqueAndLosesItsShadowWithHighContrast) {
    const Color wallpaper = desktop.screen().screen().at(ordinaryCard.middleX(), 8 + 96 + 6);
    startWithBanner();
    EXPECT_TRUE(waitUntil(10s, [&] { return !below().isNear(wallpaper, 2); })) << "it has a shadow at first";
    desktop.screen().announceBlur(true);
    EXPECT_TRUE(waitUntil(10s, [&] { return !fill().isNear(surface, 0); }))
        << "and is translucent over a blur";
    ASSERT_TRUE(set("org.freedesktop.appearance", "contrast", "1"));
    EXPECT_TRUE(waitUntil(10s, [&] { return fill().isNear(surface, 0); }));
    EXPECT_TRUE(waitUntil(10s, [&] { return below().isNear(wallpaper, 0); }));
    ASSERT_TRUE(set("org.freedesktop.appearance", "contrast", "0"));
    EXPECT_TRUE(waitUntil(10s, [&] { return !fill().isNear(surface, 0) && !below().isNear(wallpaper, 2); }));
}

TEST_F(BannerLegibility, hasHighContrastFromTheStartIfTheDesktopHas) {
    ASSERT_TRUE(set("org.gnome.desktop.a11y.interface", "high-contrast", "true"));
    startWithBanner();
    EXPECT_TRUE(waitUntil(10s, [&] { return fill().isNear(surface, 0); }));
}

TEST_F(BannerLegibility, visibleBannerTakesTheTextSizeOfTheDesktop) {
    startWithBanner();
    EXPECT_TRUE(hasCard(ordinaryCard));
    ASSERT_TRUE(set("org.gnome.desktop.interface", "text-scaling-factor", "1.25"));
    EXPECT_TRUE(hasCard({315, 8, 650, 120}));
    ASSERT_TRUE(set("org.gnome.desktop.interface", "text-scaling-factor", "1.5"));
    EXPECT_TRUE(hasCard({250, 8, 780, 144}));
    ASSERT_TRUE(set("org.gnome.desktop.interface", "text-scaling-factor", "1.0"));
    EXPECT_TRUE(hasCard(ordinaryCard));
}

} // namespace

} // namespace corvane::test
