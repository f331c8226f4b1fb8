// Banners stay above everything and disturb nothing, whatever the window manager.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

class BannerFocus : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override { desktop.startApplication(); }

    // Raises this session's waiting banner; `count` are then on the screen.
    void raiseBanner(const char* session, std::size_t count) {
        desktop.claude("Notification-permission_prompt", session, "shop");
        ASSERT_TRUE(desktop.shows(count, 0));
    }

    DesktopSession desktop{GetParam(), Compositor::none};
};

TEST_P(BannerFocus, bannerIsAboveATerminalThatWasFullScreenBefore) {
    const std::uint32_t terminal = desktop.startTerminal();
    raiseBanner("a", 1);
    EXPECT_EQ(desktop.screen().geometry(terminal), desktop.screen().screenArea());
    EXPECT_EQ(desktop.screen().activeWindow(), terminal);
}

TEST_P(BannerFocus, bannerIsAboveATerminalThatTurnsFullScreenAfterwards) {
    const std::uint32_t terminal = desktop.startTerminal(false);
    raiseBanner("a", 1);
    desktop.screen().requestFullScreen(terminal);
    ASSERT_TRUE(
        waitUntil(10s, [&] { return desktop.screen().geometry(terminal) == desktop.screen().screenArea(); }));
    // The terminal's own colour below the banner shows that it has been drawn at its new size.
    ASSERT_TRUE(waitUntil(10s, [&] {
        return desktop.screen().screen().share({300, 600, 200, 100}, {0xFFFFFF}, 0) > 0.95;
    }));
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_EQ(desktop.screen().activeWindow(), terminal);
}

TEST_P(BannerFocus, everyKeyReachesTheTerminalWhileBannersAppearAreClickedAndDisappear) {
    const std::uint32_t terminal = desktop.startTerminal();
    const std::uint32_t focused = desktop.screen().focusedWindow();
    // Types the alphabet repeatedly, adding a dot to a file each time, until the file "enough" exists.
    const auto typing = desktop.run({"sh", "-c",
                                     R"(until [ -e "$HOME/enough" ]; do xdotool type --delay 20 )"
                                     R"(abcdefghijklmnopqrstuvwxyz && printf . >>"$HOME/times"; done)"},
                                    "typing");
    ASSERT_TRUE(waitUntil(20s, [&] { return !desktop.typed().empty(); }));

    raiseBanner("a", 1);
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
    raiseBanner("b", 2);
    desktop.click(closeButton(desktop.screen().banners().front()));
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
    desktop.claude("PostToolUse-Bash", "a", "shop");
    EXPECT_TRUE(desktop.shows(0, 0));
    writeFile(desktop.home() / "enough", "");
    EXPECT_EQ(typing->wait(30s), 0);

    std::string letters;
    for (std::size_t i = fileBytes(desktop.home() / "times").value_or("").size(); i > 0; --i)
        letters += "abcdefghijklmnopqrstuvwxyz";
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.typed().size() >= letters.size(); }));
    EXPECT_EQ(desktop.typed(), letters);
    EXPECT_EQ(desktop.screen().activeWindow(), terminal);
}

TEST_P(BannerFocus, clickOnSnoozeDismissesTheBannerAndTheFocusStays) {
    const std::uint32_t focused = desktop.startTerminal();
    raiseBanner("a", 1);
    desktop.click(snoozeButton(desktop.screen().banners().front()));
    EXPECT_TRUE(desktop.shows(0, 0));
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
}

TEST_P(BannerFocus, clickOnGoToTerminalDismissesTheBanner) {
    desktop.startTerminal();
    raiseBanner("a", 1);
    desktop.click(primaryButton(desktop.screen().banners().front()));
    EXPECT_TRUE(desktop.shows(0, 0));
}

TEST_P(BannerFocus, clickOnTheCrossOfADoneBannerDismissesIt) {
    const std::uint32_t focused = desktop.startTerminal();
    // The click is known to be the cause only if the banner disappears before its six seconds are over.
    constexpr int mostAttempts = 5;
    bool isKnown = false;
    for (int attempt = 0; !isKnown && attempt < mostAttempts; ++attempt) {
        desktop.pointAway();
        const auto before = std::chrono::steady_clock::now();
        desktop.codex("codex-tui", "shop");
        ASSERT_TRUE(desktop.shows(0, 1));
        const std::vector<Banner> banners = desktop.screen().banners();
        if (!banners.empty()) desktop.click(closeButton(banners.front()));
        ASSERT_TRUE(desktop.shows(0, 0));
        isKnown = std::chrono::steady_clock::now() - before < 6s;
    }
    EXPECT_TRUE(isKnown) << "it never disappeared before the six seconds were over";
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
}

TEST_P(BannerFocus, clickOnTheCardBesideItsButtonsDoesNothing) {
    const std::uint32_t focused = desktop.startTerminal();
    raiseBanner("a", 1);
    const Rect card = desktop.screen().banners().front().card;
    desktop.click({card.x + 60, card.y + 40, 2, 2});
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
    // The next banner appears after the click has been handled.
    raiseBanner("b", 2);
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
}

TEST_P(BannerFocus, bannerStaysOnTheScreenWhenTheWorkspaceChanges) {
    desktop.screen().requestWorkspaceCount(2);
    raiseBanner("a", 1);
    for (const std::uint32_t workspace : {1U, 0U}) {
        desktop.screen().requestWorkspace(workspace);
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().currentWorkspace() == workspace; }));
        EXPECT_TRUE(desktop.shows(1, 0));
    }
    desktop.screen().requestWorkspace(1);
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().currentWorkspace() == 1; }));
    raiseBanner("b", 2);
}

TEST_P(BannerFocus, threeBannersAreStackedAndAFourthEvictsTheOldest) {
    const std::uint32_t focused = desktop.startTerminal();
    raiseBanner("a", 1);
    raiseBanner("b", 2);
    raiseBanner("c", 3);
    const std::vector<Banner> before = desktop.screen().banners();
    desktop.claude("Notification-permission_prompt", "d", "shop");
    ASSERT_TRUE(
        waitUntil(10s, [&] { return desktop.screen().banners().front().window != before[0].window; }));
    ASSERT_TRUE(desktop.shows(3, 0));
    const std::vector<Banner> after = desktop.screen().banners();
    EXPECT_EQ(after[1].window, before[0].window);
    EXPECT_EQ(after[2].window, before[1].window);
    EXPECT_EQ(desktop.screen().focusedWindow(), focused);
}

TEST_P(BannerFocus, bannerIsInNoTaskBar) {
    raiseBanner("a", 1);
    EXPECT_TRUE(desktop.screen().managedWindows("corvane").empty());
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, BannerFocus, testing::ValuesIn(windowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace

} // namespace corvane::test
