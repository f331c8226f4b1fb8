// What every listener on the accessibility bus receives about banners, and what it can do with them.

#include "Desktop/Accessibility/AssistiveDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <regex>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

constexpr std::chrono::seconds patience{10};
constexpr const char* permissionWords = "Claude is waiting for you, shop · Claude needs your permission";

class Announcements : public testing::Test {
  protected:
    /// Whether exactly these lines arrive within the time limit.
    testing::AssertionResult announces(const Lines& expected) {
        if (waitUntil(patience, [&] { return desktop_.announcements().size() >= expected.size(); }) &&
            desktop_.announcements() == expected) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << testing::PrintToString(desktop_.announcements());
    }

    /// A show, a refresh, a done banner and another show, which proves that no event of the previous ones is
    /// pending.
    void showBannersOfAllKinds() {
        Lines expected{"showing\tnotification\t" + std::string(permissionWords)};
        session().claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(announces(expected));
        expected.emplace_back("showing\tnotification\tClaude is waiting for your reply, shop");
        session().claude("Notification-idle_prompt", "a", "shop");
        ASSERT_TRUE(announces(expected));
        expected.emplace_back("showing\tnotification\tCodex finished, handbook");
        const auto before = std::chrono::steady_clock::now();
        session().codex("codex-tui", "handbook");
        ASSERT_TRUE(announces(expected));
        expected.emplace_back(
            "showing\tnotification\tClaude is waiting for you, blog · Claude needs your permission");
        session().claude("Notification-permission_prompt", "b", "blog");
        ASSERT_TRUE(announces(expected));
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            before + 6s - std::chrono::steady_clock::now());
        if (session().shows(2, 1, left)) return;
        // The six seconds of the done banner were over too soon.
        ASSERT_TRUE(session().shows(2, 0));
        session().codex("codex-tui", "handbook");
        EXPECT_TRUE(session().shows(2, 1));
    }

    DesktopSession& session() { return desktop_.session(); }

    AssistiveDesktop desktop_;
};

TEST_F(Announcements, everyShowAndRefreshReachesAListenerOnceWithItsWords) {
    desktop_.startBus();
    desktop_.startListener();
    session().startApplication();
    desktop_.waitForApplication();
    showBannersOfAllKinds();
    EXPECT_EQ(session().applicationOutput(), "");
}

TEST_F(Announcements, aListenerThatStartsAfterTheApplicationReceivesTheSame) {
    desktop_.startBus();
    session().startApplication();
    desktop_.startListener();
    desktop_.waitForApplication();
    showBannersOfAllKinds();
}

TEST_F(Announcements, anAccessibilityBusThatStartsAfterTheApplicationIsJoined) {
    session().startApplication();
    desktop_.startBus();
    desktop_.startListenerToJoiningApplication();
    showBannersOfAllKinds();
    EXPECT_EQ(session().applicationOutput(), "");
}

TEST_F(Announcements, withoutAMessageBusBannersShowAndNothingIsPrinted) {
    const auto application =
        session().run({CORVANE_PROGRAM}, "application", {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"});
    session().claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(session().shows(1, 0, patience));
    EXPECT_EQ(session().applicationOutput(), "");
}

TEST_F(Announcements, theWaitingClockIsNotAnnounced) {
    desktop_.startBus();
    desktop_.startListener();
    session().startApplication();
    desktop_.waitForApplication();
    session().claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(announces({"showing\tnotification\t" + std::string(permissionWords)}));
    // Not an exact time: reading the tree may take longer than the second for which that is shown.
    const auto clockHasTicked = [this] {
        static const std::regex ticked(R"(waiting (0:0[3-9]|0:[1-5]\d|[1-9]\d*:\d\d)\t)");
        const Lines tree = desktop_.tree();
        return std::any_of(tree.begin(), tree.end(),
                           [](const std::string& line) { return std::regex_search(line, ticked); });
    };
    EXPECT_TRUE(waitUntil(patience, clockHasTicked));
    for (const std::string& line : desktop_.heard()) {
        EXPECT_EQ(line.find("waiting 0:"), std::string::npos) << line;
    }
}

TEST_F(Announcements, theBannersPartsAreFoundByRoleAndName) {
    desktop_.startBus();
    session().startApplication();
    desktop_.startListener();
    desktop_.waitForApplication();
    session().claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(session().shows(1, 0));
    Lines tree = desktop_.tree();
    ASSERT_EQ(tree.size(), 8U);
    EXPECT_EQ(tree[4].substr(0, tree[4].find(':')), "1\tunknown\twaiting 0");
    tree.erase(tree.begin() + 4);
    EXPECT_EQ(
        tree,
        (Lines{"0\tnotification\t" + std::string(permissionWords) + "\t", "1\timage\tClaude\t",
               "1\tlabel\tClaude is waiting for you\t", "1\tlabel\tshop · Claude needs your permission\t",
               "1\tpush button\tGo to Terminal\tPress,SetFocus", "1\tpush button\tSnooze\tPress,SetFocus",
               "1\tpush button\tClose\tPress,SetFocus"}));
}

TEST_F(Announcements, everyButtonIsPressedFromTheAccessibilityBus) {
    desktop_.startBus();
    session().startApplication();
    desktop_.startListener();
    desktop_.waitForApplication();
    // The hook reports that the agents run in this terminal; another window covers it.
    const auto terminal =
        session().run({"xterm", "-name", "ghostty", "-class", "com.mitchellh.ghostty"}, "terminal");
    const auto terminals = [this] { return session().screen().managedWindows("com.mitchellh.ghostty"); };
    ASSERT_TRUE(waitUntil(patience, [&] { return terminals().size() == 1; }));
    const std::uint32_t cover = session().startTerminal();

    session().claude("Notification-permission_prompt", "a", "shop");
    session().claude("Notification-permission_prompt", "b", "blog");
    session().claude("Notification-permission_prompt", "c", "handbook");
    ASSERT_TRUE(session().shows(3, 0));
    EXPECT_TRUE(desktop_.pressButton("Close", "blog"));
    EXPECT_TRUE(session().shows(2, 0));
    EXPECT_TRUE(desktop_.pressButton("Snooze", "handbook"));
    EXPECT_TRUE(session().shows(1, 0));
    EXPECT_EQ(session().screen().activeWindow(), cover);
    EXPECT_TRUE(desktop_.pressButton("Go to Terminal", "shop"));
    EXPECT_TRUE(waitUntil(patience, [&] { return session().screen().banners().empty(); }));
    EXPECT_TRUE(waitUntil(patience, [&] { return session().screen().activeWindow() == terminals().at(0); }));
    EXPECT_FALSE(desktop_.pressButton("Close", "shop"));
}

} // namespace

} // namespace corvane::test
