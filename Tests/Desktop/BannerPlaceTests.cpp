// Which screen banners are shown on, and how they keep clear of panels.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/SidePanel.h"

#include <gtest/gtest.h>

#include <chrono>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

// Between the monitors is an area that belongs to none of them.
constexpr Rect left{0, 0, 580, 800};
constexpr Rect right{700, 0, 580, 800};
constexpr Rect between{620, 300, 2, 2};
constexpr Rect inTheLeft{280, 600, 2, 2};
constexpr Rect inTheRight{1000, 600, 2, 2};
constexpr int panelHeight = 40;

Rect below(Rect monitor, int height) {
    return {monitor.x, monitor.y + height, monitor.width, monitor.height - height};
}

class BannerPlace : public testing::Test {
  protected:
    void raiseBanner() { desktop.claude("Notification-permission_prompt", "a", "shop"); }

    DesktopSession desktop{"openbox", Compositor::none};
};

TEST_F(BannerPlace, isTheScreenOfTheFocusedWindowWhereverThePointerIs) {
    desktop.setMonitors({left, right});
    desktop.startApplication();
    desktop.startTerminal(false, "40x10+800+300");
    desktop.point(inTheLeft);
    raiseBanner();
    EXPECT_TRUE(desktop.standIn(right));
}

TEST_F(BannerPlace, isTheScreenOfThePointerWhenNoWindowHasTheFocus) {
    desktop.setMonitors({left, right});
    desktop.startApplication();
    desktop.point(inTheRight);
    raiseBanner();
    EXPECT_TRUE(desktop.standIn(right));
}

TEST_F(BannerPlace, isThePrimaryScreenWhenThereIsNeitherFocusNorPointer) {
    desktop.setMonitors({right, left});
    desktop.startApplication();
    desktop.point(between);
    raiseBanner();
    EXPECT_TRUE(desktop.standIn(right));
}

TEST_F(BannerPlace, followsWhenAMonitorIsAddedWhileABannerIsShown) {
    desktop.startApplication();
    desktop.point(inTheRight);
    raiseBanner();
    ASSERT_TRUE(desktop.shows(1, 0));
    desktop.setMonitors({left, right});
    EXPECT_TRUE(desktop.standIn(right));
}

TEST_F(BannerPlace, isBelowAPanelThatAppearsAndDisappearsWhileABannerIsShown) {
    desktop.startApplication();
    raiseBanner();
    ASSERT_TRUE(desktop.shows(1, 0));
    const Rect screen = desktop.screen().screenArea();
    {
        const SidePanel panel(desktop.display(), {0, 0, screen.width, panelHeight});
        EXPECT_TRUE(desktop.standIn(below(screen, panelHeight)));
        EXPECT_TRUE(desktop.shows(1, 0));
    }
    EXPECT_TRUE(desktop.standIn(screen));
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_F(BannerPlace, isBelowThePanelOfItsOwnMonitorOnly) {
    desktop.setMonitors({left, right});
    desktop.startApplication();
    desktop.point(inTheLeft);
    raiseBanner();
    ASSERT_TRUE(desktop.standIn(left));
    {
        const SidePanel panel(desktop.display(), {right.x, 0, right.width, panelHeight});
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().workArea().y == panelHeight; }));
        desktop.claude("Notification-permission_prompt", "b", "shop");
        EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().banners().size() == 2; }));
        EXPECT_TRUE(desktop.standIn(left));
    }
    const SidePanel panel(desktop.display(), {left.x, 0, left.width, panelHeight});
    EXPECT_TRUE(desktop.standIn(below(left, panelHeight)));
}

} // namespace

} // namespace corvane::test
