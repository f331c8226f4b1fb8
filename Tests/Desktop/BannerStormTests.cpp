// Many events at once result in the same banners as one by one.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/TextLook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr int eventCount = 100;
constexpr std::size_t maxBanners = 3;

class BannerStorm : public testing::TestWithParam<Compositor> {
  protected:
    DesktopSession desktop{"openbox", GetParam()};
};

TEST_P(BannerStorm, hundredAlertsInOneSecondLeaveTheThreeNewestInOrder) {
    desktop.startApplication();
    const Picture before = desktop.screen().screen();
    // The application is stopped until all are written, with dates spread over one second.
    desktop.application().signal(SIGSTOP);
    const Date now = Date::fromSystemClock(std::chrono::system_clock::now());
    std::vector<std::filesystem::path> known;
    for (int i = 0; i < eventCount; ++i) {
        const std::string number = std::to_string(i);
        desktop.claude("Notification-permission_prompt", "session" + number, "project" + number);
        for (const auto& file : desktop.inbox()) {
            if (std::ranges::find(known, file) != known.end()) continue;
            setModificationDate(file, now + std::chrono::milliseconds(10 * (i - eventCount)));
            known.push_back(file);
        }
    }
    ASSERT_EQ(known.size(), std::size_t{eventCount});
    desktop.application().signal(SIGCONT);

    ASSERT_TRUE(desktop.shows(maxBanners, 0, 10s));
    EXPECT_TRUE(desktop.inbox().empty());
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().windowCount() == maxBanners; }));
    const Picture screen = desktop.screen().screen();
    const std::vector<Banner> banners = desktop.screen().banners();
    for (std::size_t i = 0; i < banners.size(); ++i) {
        const std::string project = "project" + std::to_string(eventCount - 1 - static_cast<int>(i));
        EXPECT_EQ(wordsFault(screen, banners[i], BannerLine::subtitle, project), std::nullopt);
    }

    for (std::size_t i = 0; i < maxBanners; ++i) {
        desktop.claude("PostToolUse-Bash", "session" + std::to_string(eventCount - 1 - static_cast<int>(i)),
                       "shop");
    }
    EXPECT_TRUE(desktop.shows(0, 0));
    EXPECT_EQ(desktop.screen().windowCount(), 0U);
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().screen().differences(before, 0) == 0; }));
}

TEST_P(BannerStorm, alertsAsFastAsTheHookCanSendLeaveThreeBannersAndNoOtherWindow) {
    desktop.startApplication();
    for (int i = 0; i < eventCount; ++i)
        desktop.claude("Notification-permission_prompt", "session" + std::to_string(i), "shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.shows(maxBanners, 0));
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().windowCount() == maxBanners; }));
}

INSTANTIATE_TEST_SUITE_P(Desktops, BannerStorm, testing::Values(Compositor::none, Compositor::picom),
                         [](const auto& compositor) {
                             return compositor.param == Compositor::none ? "withoutCompositor"
                                                                         : "withCompositor";
                         });

} // namespace

} // namespace corvane::test
