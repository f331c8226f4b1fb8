// Banners follow the appearance and the reduced-motion setting of the desktop's portal.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr Color lightOutline{0x8A5300};
constexpr Color darkOutline{0xFFC15A};
constexpr Rect card{380, 8, 520, 96};
constexpr int tolerance = 28; // the wallpaper and the shadow shine through a little

class BannerAppearance : public testing::Test {
  protected:
    void SetUp() override {
        portal = desktop.run({CORVANE_PORTAL}, "portal");
        // It is on the bus once it accepts a setting.
        ASSERT_TRUE(waitUntil(20s, [&] { return set("none", "none", "0"); }));
    }

    bool set(const std::string& group, const std::string& key, const std::string& value) {
        return desktop.run({CORVANE_PORTAL, "set", group, key, value}, "set")->wait(20s) == 0;
    }
    void setColorScheme(const std::string& value) {
        ASSERT_TRUE(set("org.freedesktop.appearance", "color-scheme", value));
    }
    void setAnimations(const std::string& value) {
        ASSERT_TRUE(set("org.gnome.desktop.interface", "enable-animations", value));
    }

    void setTheme(const std::string& name) { desktop.setSettings("Net/ThemeName \"" + name + "\"\n"); }

    /// Expects banners to fade, and to slide only if the user wants that. A fade of a fifth of a second that
    /// a busy machine has disturbed does not count, nor does the first one: the setting may still be on its
    /// way.
    void expectFade(bool slides) {
        constexpr int mostLooks = 20;
        constexpr std::size_t enoughSteps = 4;
        const Color wallpaper = desktop.screen().screen(fadeProbe(card)).at(0, 0);
        for (int look = 1; look <= mostLooks; ++look) {
            raiseBanner("a");
            const auto samples = recordFade(desktop, card, wallpaper, [](const auto& seen) {
                return seen.back().isMapped && seen.back().opacity > 0.98;
            });
            ASSERT_GT(samples.back().opacity, 0.98);
            ASSERT_TRUE(desktop.shows(1, 0));
            endSession("a");
            const bool hasSlid = std::ranges::any_of(
                samples, [](const FadeSample& sample) { return sample.isMapped && sample.top != card.y; });
            // A slide that was seen is there; only an undisturbed look shows that there is none.
            const bool isSeen = stepsBetween(samples) >= enoughSteps && (hasSlid || isUndisturbed(samples));
            if (look < mostLooks && (!isSeen || (look == 1 && hasSlid != slides))) continue;
            EXPECT_GE(stepsBetween(samples), enoughSteps) << "it should have faded";
            EXPECT_EQ(hasSlid, slides);
            return;
        }
    }
    /// Dismisses the banner.
    void endSession(const char* session) {
        desktop.claude("SessionEnd-prompt_input_exit", session, "shop");
        ASSERT_TRUE(desktop.shows(0, 0));
    }

    void raiseBanner(const char* session) {
        desktop.claude("Notification-permission_prompt", session, "shop");
    }

    testing::AssertionResult haveOutline(Color color) {
        Color seen;
        const bool isThere = waitUntil(10s, [&] {
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

TEST_F(BannerAppearance, visibleBannersTurnDarkAndLightAgainWithThePortal) {
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

TEST_F(BannerAppearance, theSettingsManagersThemeDecidesIfThePortalLeavesItOpen) {
    setColorScheme("0");
    setTheme("Greybird");
    desktop.startApplication();
    raiseBanner("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(haveOutline(lightOutline));
    setTheme("Greybird-dark");
    EXPECT_TRUE(haveOutline(darkOutline));
    setColorScheme("2");
    EXPECT_TRUE(haveOutline(lightOutline)) << "the portal comes first";
    setColorScheme("0");
    EXPECT_TRUE(haveOutline(darkOutline));
    setTheme("Greybird");
    EXPECT_TRUE(haveOutline(lightOutline));
}

TEST_F(BannerAppearance, aSettingsManagerThatStartsLaterIsFollowed) {
    desktop.startApplication();
    raiseBanner("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    setTheme("Adwaita-dark");
    EXPECT_TRUE(haveOutline(darkOutline));
    setTheme("Adwaita");
    EXPECT_TRUE(haveOutline(lightOutline));
}

TEST_F(BannerAppearance, bannerFadesInPlaceIfThePortalDisablesAnimations) {
    setAnimations("false");
    desktop.startApplication();
    expectFade(false);
}

TEST_F(BannerAppearance, bannerFadesInPlaceIfTheSettingsManagerDisablesAnimations) {
    desktop.setSettings("Gtk/EnableAnimations 0\n");
    desktop.startApplication();
    expectFade(false);
    desktop.setSettings("Gtk/EnableAnimations 1\n");
    expectFade(true);
}

TEST_F(BannerAppearance, bannerFadesInPlaceIfKdeDisablesAnimations) {
    const auto setFactor = [&](const std::string& factor) {
        const std::filesystem::path file = desktop.home() / ".config/kdeglobals";
        writeFile(file.string() + ".new", "[KDE]\nAnimationDurationFactor=" + factor + "\n");
        std::filesystem::rename(file.string() + ".new", file);
    };
    setFactor("0");
    desktop.startApplication({"XDG_CURRENT_DESKTOP=KDE"});
    expectFade(false);
    setFactor("1");
    expectFade(true);
}

} // namespace

} // namespace corvane::test
