// The way from an agent's call of the hook to the banner on the screen, as the X server sees it.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Starvation.h"
#include "Desktop/Support/TextLook.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

TEST(BannerRoad, promptRaisesNothingPermissionRaisesABannerAndTheToolsEndDismissesIt) {
    DesktopSession desktop;
    desktop.startApplication();

    desktop.claude("UserPromptSubmit", "a", "shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.staysEmpty(1s));

    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(desktop.shows(1, 0));

    desktop.claude("PostToolUse-Bash", "a", "shop");
    EXPECT_TRUE(desktop.shows(0, 0));
}

TEST(BannerRoad, idlePromptRaisesABannerThatTheNextPromptOrTheSessionsEndDismisses) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.claude("Notification-idle_prompt", "a", "shop");
    EXPECT_TRUE(desktop.shows(1, 0));
    desktop.claude("Notification-idle_prompt", "b", "handbook");
    EXPECT_TRUE(desktop.shows(2, 0));
    desktop.claude("SessionEnd-prompt_input_exit", "a", "shop");
    EXPECT_TRUE(desktop.shows(1, 0));
    desktop.claude("UserPromptSubmit", "b", "handbook");
    EXPECT_TRUE(desktop.shows(0, 0));
}

TEST(BannerRoad, notificationOfAnUnknownTypeRaisesNothingAndIsRemovedFromTheInbox) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.claude("Notification-agent_needs_input", "a", "shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.staysEmpty(1s));
}

TEST(BannerRoad, longTurnRaisesADoneBannerThatDisappearsAfterSixSeconds) {
    DesktopSession desktop;
    desktop.startApplication();

    desktop.application().signal(SIGSTOP);
    desktop.claude("UserPromptSubmit", "a", "shop");
    ASSERT_EQ(desktop.inbox().size(), 1U);
    const auto longAgo = std::chrono::system_clock::now() - 95s;
    setModificationDate(desktop.inbox().front(), Date::fromSystemClock(longAgo));
    desktop.claude("Stop", "a", "shop");
    Starvation starvation(desktop.painters());
    desktop.application().signal(SIGCONT);

    // It appears between the last look without it and the first one with it, however far apart these are, and
    // disappears likewise.
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + 30s;
    Clock::time_point lastWithout = Clock::now();
    std::optional<Clock::time_point> firstSeen;
    std::optional<Clock::time_point> lastSeen;
    std::optional<Clock::time_point> firstGone;
    while (!firstGone && Clock::now() < deadline) {
        const Clock::time_point before = Clock::now();
        const bool isThere = !desktop.screen().banners().empty();
        const Clock::time_point after = Clock::now();
        if (!isThere && !firstSeen) lastWithout = before;
        if (!isThere && firstSeen) firstGone = after;
        if (isThere) lastSeen = before;
        if (isThere && !firstSeen) {
            firstSeen = after;
            EXPECT_TRUE(desktop.shows(0, 1, 5s));
        }
        std::this_thread::sleep_for(10ms);
    }
    ASSERT_TRUE(firstGone.has_value());
    const std::chrono::nanoseconds starved = starvation.soFar();
    EXPECT_GT(*firstGone - lastWithout + starved, 5500ms);
    EXPECT_LT(*lastSeen - *firstSeen - starved, 7500ms);
}

TEST(BannerRoad, shortTurnRaisesNoDoneBanner) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.claude("UserPromptSubmit", "a", "shop");
    desktop.claude("Stop", "a", "shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.staysEmpty(1500ms));
}

TEST(BannerRoad, codexTurnRaisesADoneBanner) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.codex("codex-tui", "shop");
    EXPECT_TRUE(desktop.shows(0, 1));
}

TEST(BannerRoad, bannersShowTheRightWords) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    desktop.claude("Notification-idle_prompt", "b", "handbook");
    ASSERT_TRUE(desktop.shows(2, 0));
    desktop.codex("codex-tui", "kiosk");
    ASSERT_TRUE(desktop.shows(2, 1));

    const Picture screen = desktop.screen().screen();
    const std::vector<Banner> banners = desktop.screen().banners();
    const std::array titles{"Codex finished", "Claude is waiting for your reply",
                            "Claude is waiting for you"};
    const std::array projects{"kiosk", "handbook", "shop"};
    for (std::size_t i = 0; i < banners.size(); ++i) {
        for (std::size_t j = 0; j < titles.size(); ++j) {
            const auto title = wordsFault(screen, banners[i], BannerLine::title, titles[j]);
            const auto project = wordsFault(screen, banners[i], BannerLine::subtitle, projects[j]);
            EXPECT_EQ(!title, i == j) << titles[j] << ": " << title.value_or("seen");
            EXPECT_EQ(!project, i == j) << projects[j] << ": " << project.value_or("seen");
        }
    }
}

TEST(BannerRoad, eventsFromBeforeTheStartAreShownAtTheStart) {
    DesktopSession desktop;
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_EQ(desktop.inbox().size(), 1U);
    desktop.startApplication();
    EXPECT_TRUE(desktop.shows(1, 0));
}

} // namespace

} // namespace corvane::test
