// What a banner's window requests and takes: no focus, no click beside its card, a place on top.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/WindowChanges.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

class BannerWindow : public testing::Test {
  protected:
    void raiseBanner() {
        desktop.claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(desktop.shows(1, 0));
    }

    DesktopSession desktop;
};

TEST_F(BannerWindow, asksForNoFocus) {
    desktop.startApplication();
    raiseBanner();
    EXPECT_FALSE(desktop.screen().asksForFocus(desktop.screen().banners().front().window));
}

TEST_F(BannerWindow, isOnTopAgainWhenAnotherWindowBecomesActiveAfterOneCoveredIt) {
    desktop.startApplication();
    raiseBanner();
    desktop.screen().cover(desktop.screen().banners().front().frame);
    ASSERT_TRUE(waitUntil(10s, [&] { return screenFault(desktop.screen(), 1, 0).has_value(); }));
    desktop.startTerminal(false, "40x5+100+600");
    EXPECT_TRUE(desktop.shows(1, 0));
}

// A screen locker is such a window: no window manager manages it.
TEST_F(BannerWindow, leavesAWindowThatWasRaisedOverItOnTop) {
    desktop.startApplication();
    raiseBanner();
    desktop.screen().cover(desktop.screen().screenArea());
    ASSERT_TRUE(waitUntil(10s, [&] { return screenFault(desktop.screen(), 1, 0).has_value(); }));
    constexpr auto twoPasses = 2100ms;
    EXPECT_FALSE(waitUntil(twoPasses, [&] { return !screenFault(desktop.screen(), 1, 0).has_value(); }));
}

TEST_F(BannerWindow, isMovedAndRaisedOnceWhenAnotherAppearsAndLeftAloneWhileClocksTick) {
    desktop.startApplication();
    raiseBanner();
    const std::uint32_t window = desktop.screen().banners().front().window;
    constexpr auto twoTicks = 2100ms;
    WindowChanges changes(desktop.display());
    std::this_thread::sleep_for(twoTicks);
    EXPECT_EQ(changes.take()[window], 0U);

    desktop.claude("Notification-permission_prompt", "b", "shop");
    ASSERT_TRUE(desktop.shows(2, 0));
    EXPECT_EQ(changes.take()[window], 2U);
    std::this_thread::sleep_for(twoTicks);
    const auto ticking = changes.take();
    for (const Banner& banner : desktop.screen().banners())
        EXPECT_FALSE(ticking.contains(banner.window));

    desktop.claude("PostToolUse-Bash", "b", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_EQ(changes.take()[window], 1U); // moved back
}

/// With a terminal below the banner's place, and another window focused.
class BannerOverATerminal : public BannerWindow {
  protected:
    void SetUp() override {
        desktop.startApplication();
        terminal = desktop.startTerminal(false, "130x14+250+0");
        other = desktop.run({"xterm", "-class", "Other", "-geometry", "40x5+100+600", "-e", "sleep", "1000"},
                            "other");
        ASSERT_TRUE(waitUntil(20s, [&] {
            const auto others = desktop.screen().managedWindows("Other");
            return !others.empty() && desktop.screen().activeWindow() == others.front();
        }));
    }

    testing::AssertionResult clickReachesTheTerminal(Rect area) {
        desktop.click(area);
        if (waitUntil(10s, [&] { return desktop.screen().activeWindow() == terminal; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the terminal did not become active";
    }

    std::unique_ptr<ChildProcess> other;
    std::uint32_t terminal = 0;
};

TEST_F(BannerOverATerminal, clickOnTheShadowReachesTheWindowBelow) {
    raiseBanner();
    const Banner banner = desktop.screen().banners().front();
    ASSERT_TRUE(banner.hasShadow);
    const Rect shadow{banner.card.middleX(), banner.card.bottom() + 6, 2, 2};
    ASSERT_LT(shadow.bottom(), banner.frame.bottom());
    EXPECT_TRUE(clickReachesTheTerminal(shadow));
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_F(BannerOverATerminal, clickOnACardThatFadesOutReachesTheWindowBelow) {
    // Stopped while it fades, so that the click hits the window that is still on the screen. A busy machine
    // may miss the fifth of a second that this takes; the next banner fades as well.
    constexpr int mostAttempts = 12;
    bool isFading = false;
    for (int attempt = 0; !isFading && attempt < mostAttempts; ++attempt) {
        ASSERT_NO_FATAL_FAILURE(raiseBanner());
        const Rect card = desktop.screen().banners().front().card;
        const auto outline = [&] { return desktop.screen().screen({card.middleX(), card.y, 1, 1}).at(0, 0); };
        const Color full = outline();
        desktop.claude("PostToolUse-Bash", "a", "shop");
        EXPECT_TRUE(waitUntil(10s, [&] { return !outline().isNear(full, 40); }));
        desktop.application().signal(SIGSTOP);
        isFading = desktop.screen().banners().size() == 1;
        if (isFading) {
            EXPECT_TRUE(clickReachesTheTerminal(primaryButton(desktop.screen().banners().front())));
        }
        desktop.application().signal(SIGCONT);
        EXPECT_TRUE(desktop.shows(0, 0));
    }
    EXPECT_TRUE(isFading) << "it was always hidden already";
}

} // namespace

} // namespace corvane::test
