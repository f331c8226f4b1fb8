// The positions and the stacking order of banners, with and without a compositing manager.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Starvation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

class BannerStack : public testing::TestWithParam<Compositor> {
  protected:
    DesktopSession desktop{"openbox", GetParam()};
};

TEST_P(BannerStack, threeBannersStackNewestOnTopAndAFourthEvictsTheOldest) {
    desktop.startApplication();
    std::vector<std::uint32_t> windows;
    for (const char* const session : {"a", "b", "c"}) {
        desktop.claude("Notification-permission_prompt", session, "shop");
        ASSERT_TRUE(desktop.shows(windows.size() + 1, 0));
        const std::vector<Banner> banners = desktop.screen().banners();
        for (std::size_t i = 0; i < windows.size(); ++i)
            EXPECT_EQ(banners[i + 1].window, windows[i]);
        windows.insert(windows.begin(), banners.front().window);
    }
    desktop.claude("Notification-permission_prompt", "d", "shop");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().banners().front().window != windows[0]; }));
    ASSERT_TRUE(desktop.shows(3, 0));
    const std::vector<Banner> banners = desktop.screen().banners();
    EXPECT_EQ(banners[1].window, windows[0]);
    EXPECT_EQ(banners[2].window, windows[1]);
}

TEST_P(BannerStack, bannersBelowCloseTheGapOfADismissedOne) {
    desktop.startApplication();
    for (const char* const session : {"a", "b", "c"}) {
        desktop.claude("Notification-permission_prompt", session, "shop");
        // One after the other, so that the order is known.
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    }
    ASSERT_TRUE(desktop.shows(3, 0));
    const std::vector<Banner> before = desktop.screen().banners();
    desktop.claude("PostToolUse-Bash", "b", "shop");
    ASSERT_TRUE(desktop.shows(2, 0));
    const std::vector<Banner> after = desktop.screen().banners();
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[1].window, before[2].window);
}

TEST_P(BannerStack, aDoubleClickOnTheCrossClosesOneBannerOnly) {
    desktop.startApplication();
    Rect cross;
    const auto closesOne = [&] {
        desktop.pointAway();
        for (const char* const session : {"a", "b", "c"})
            desktop.claude("Notification-permission_prompt", session, "shop");
        EXPECT_TRUE(desktop.shows(3, 0));
        const std::vector<Banner> banners = desktop.screen().banners();
        if (banners.empty()) return false;
        cross = closeButton(banners.front());
        const auto twice =
            desktop.run({"xdotool", "mousemove", std::to_string(cross.middleX()),
                         std::to_string(cross.middleY()), "click", "--repeat", "2", "--delay", "120", "1"},
                        "xdotool");
        EXPECT_EQ(twice->wait(10s), 0);
        EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() < 3; }));
        return !waitUntil(1s, [this] { return desktop.screen().banners().size() < 2; });
    };
    // If the application is delayed for longer than the double-click interval, it treats the second press as
    // a separate one.
    constexpr int mostAttempts = 5;
    bool isClosedOnce = false;
    for (int attempt = 0; !isClosedOnce && attempt < mostAttempts; ++attempt) {
        Starvation starvation(desktop.painters());
        isClosedOnce = closesOne();
        if (starvation.soFar() < 200ms) break;
    }
    ASSERT_TRUE(isClosedOnce);
    ASSERT_TRUE(desktop.shows(2, 0));
    // By now the one that has slid under the pointer accepts presses.
    desktop.click(cross);
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_P(BannerStack, secondAlertOfASessionKeepsTheOneBannerAtItsPlace) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    const std::vector<Banner> before = desktop.screen().banners();
    desktop.claude("Notification-idle_prompt", "a", "shop");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_EQ(desktop.screen().banners(), before);
}

TEST_P(BannerStack, windowHasMarginsForAShadowOnlyWhereWindowsAreBlended) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    desktop.codex("codex-tui", "shop");
    ASSERT_TRUE(desktop.shows(1, 1));
    for (const Banner& banner : desktop.screen().banners())
        EXPECT_EQ(banner.hasShadow, GetParam() == Compositor::picom);
}

TEST_P(BannerStack, desktopIsDarkerBelowTheCardOnlyWhereWindowsAreBlended) {
    desktop.startApplication();
    const Picture before = desktop.screen().screen();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    const Rect card = desktop.screen().banners().front().card;
    const Rect below{card.middleX(), card.bottom() + 2, 1, 1};
    const auto red = [&](const Picture& picture) { return picture.at(below.x, below.y).channels().front(); };
    if (GetParam() == Compositor::picom) {
        EXPECT_LT(red(desktop.screen().screen()), red(before) - 10);
    } else {
        EXPECT_EQ(red(desktop.screen().screen()), red(before));
    }
}

TEST_P(BannerStack, desktopShowsAtTheCornersOutsideTheCardsRounding) {
    desktop.startApplication();
    const Picture before = desktop.screen().screen();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    const Rect card = desktop.screen().banners().front().card;
    const Picture after = desktop.screen().screen();
    const std::array corners{std::array{card.x, card.y}, std::array{card.right() - 1, card.y},
                             std::array{card.x, card.bottom() - 1},
                             std::array{card.right() - 1, card.bottom() - 1}};
    // A shadow may darken what is seen there.
    const int tolerance = GetParam() == Compositor::picom ? 40 : 0;
    for (const auto& [x, y] : corners) {
        EXPECT_TRUE(after.at(x, y).isNear(before.at(x, y), tolerance))
            << "at " << x << "," << y << ": " << std::hex << after.at(x, y).rgb << " instead of "
            << before.at(x, y).rgb;
    }
}

TEST_P(BannerStack, screenIsAsBeforeOnceTheBannersAreHidden) {
    desktop.startApplication();
    const Picture before = desktop.screen().screen();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_NE(desktop.screen().screen().differences(before, 0), 0U);
    desktop.claude("PostToolUse-Bash", "a", "shop");
    ASSERT_TRUE(desktop.shows(0, 0));
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().screen().differences(before, 0) == 0; }));
}

TEST_P(BannerStack, visibleBannersFollowACompositorThatStartsAndStops) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    const auto haveShadows = [&](bool wanted) {
        const std::vector<Banner> banners = desktop.screen().banners();
        return std::ranges::all_of(banners, [&](const Banner& b) { return b.hasShadow == wanted; });
    };
    const auto setCompositor = [&](bool isThere) {
        if (isThere) {
            desktop.startCompositor();
        } else {
            desktop.stopCompositor();
        }
    };
    // Both visible banners must follow. Where that takes longer than the six seconds of the done banner, the
    // change is made again.
    const auto follow = [&](bool isThere) {
        constexpr int mostAttempts = 4;
        for (int attempt = 0; attempt < mostAttempts && desktop.shows(1, 0); ++attempt) {
            const auto end = std::chrono::steady_clock::now() + 6s;
            const auto left = [&end] {
                return std::chrono::duration_cast<std::chrono::milliseconds>(
                    end - std::chrono::steady_clock::now());
            };
            desktop.codex("codex-tui", "shop");
            const bool areShown = desktop.shows(1, 1);
            setCompositor(isThere);
            if (areShown && waitUntil(left(), [&] { return haveShadows(isThere); }) &&
                desktop.shows(1, 1, left()))
                return true;
            setCompositor(!isThere);
        }
        return false;
    };
    if (GetParam() == Compositor::none) {
        EXPECT_TRUE(follow(true));
    }
    EXPECT_TRUE(follow(false));
    const Picture screen = desktop.screen().screen();
    for (const Banner& banner : desktop.screen().banners()) {
        const Rect corner{banner.card.x, banner.card.y, 2, 2};
        EXPECT_EQ(screen.share(corner, {0x000000}, 60), 0) << "the corner is black";
    }
}

// Without hints from the window manager, a banner can only check periodically whether it is covered.
TEST(BannerUnderTwm, isOnTopAgainSoonAfterAWindowWasRaisedOverIt) {
    DesktopSession desktop("twm", Compositor::none);
    desktop.startApplication();
    const auto terminal = desktop.run({"xterm", "-geometry", "120x20+200+0", "-e", "sleep", "1000"}, "xterm");
    desktop.claude("Notification-permission_prompt", "a", "shop");
    const auto search =
        desktop.run({"xdotool", "search", "--sync", "--onlyvisible", "--class", "xterm"}, "search");
    ASSERT_EQ(search->wait(20s), 0);
    ASSERT_TRUE(desktop.shows(1, 0));

    desktop.application().signal(SIGSTOP);
    const auto raising =
        desktop.run({"xdotool", "search", "--onlyvisible", "--class", "xterm", "windowraise"}, "raise");
    ASSERT_EQ(raising->wait(20s), 0);
    ASSERT_TRUE(waitUntil(10s, [&] { return screenFault(desktop.screen(), 1, 0).has_value(); }));
    desktop.application().signal(SIGCONT);
    EXPECT_TRUE(desktop.shows(1, 0));
}

INSTANTIATE_TEST_SUITE_P(Desktops, BannerStack, testing::Values(Compositor::none, Compositor::picom),
                         [](const auto& compositor) {
                             return compositor.param == Compositor::none ? "withoutCompositor"
                                                                         : "withCompositor";
                         });

} // namespace

} // namespace corvane::test
