// "Go to Terminal" brings the session's terminal to the front, wherever it is.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

class BannerJump : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        desktop.startApplication();
        desktop.screen().requestWorkspaceCount(2);
        terminal = desktop.startTerminal(false, "60x20+100+300");
    }

    void raiseBanner() {
        // The terminal reports its own name, as some do, so that it is searched for as a window class.
        desktop.claude("Notification-permission_prompt", "a", "shop", {"__CFBundleIdentifier=XTerm"});
        ASSERT_TRUE(desktop.shows(1, 0));
    }

    void goToTerminal() {
        desktop.click(primaryButton(desktop.screen().banners().front()));
        EXPECT_TRUE(desktop.shows(0, 0));
        EXPECT_TRUE(waitUntil(10s, [&] {
            return desktop.screen().activeWindow() == terminal && desktop.screen().hasFocus(terminal);
        }));
    }

    // Types something and waits until the terminal has received it, which proves that it has the focus.
    void expectKeysToArrive() {
        EXPECT_EQ(desktop.type("here", 20ms)->wait(20s), 0);
        EXPECT_TRUE(waitUntil(10s, [&] { return desktop.typed() == "here"; })) << desktop.typed();
    }

    DesktopSession desktop{GetParam(), Compositor::none};
    std::uint32_t terminal = 0;
};

TEST_P(BannerJump, clickRaisesTheTerminalFromAnotherWorkspace) {
    desktop.screen().requestWorkspace(1);
    ASSERT_TRUE(waitUntil(10s, [&] {
        return desktop.screen().currentWorkspace() == 1 && desktop.screen().activeWindow() != terminal;
    }));
    raiseBanner();
    goToTerminal();
    EXPECT_EQ(desktop.screen().currentWorkspace(), 0U);
    EXPECT_EQ(desktop.screen().workspace(terminal), 0U) << "it should have stayed on its workspace";
    expectKeysToArrive();
}

TEST_P(BannerJump, clickRaisesTheTerminalThatWasMinimized) {
    desktop.screen().requestMinimized(terminal);
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().isMinimized(terminal); }));
    raiseBanner();
    goToTerminal();
    EXPECT_TRUE(waitUntil(10s, [&] { return !desktop.screen().isMinimized(terminal); }));
    expectKeysToArrive();
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, BannerJump, testing::ValuesIn(windowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace

} // namespace corvane::test
