// What Orca speaks about banners, as its own debug output has it.

#include "Desktop/Accessibility/AssistiveDesktop.h"

#include <gtest/gtest.h>

namespace corvane::test {

namespace {

using Lines = std::vector<std::string>;

constexpr std::chrono::seconds patience{20};

class Orca : public testing::Test {
  protected:
    /// Whether Orca has spoken exactly this, at the latest after a while.
    testing::AssertionResult speaks(const Lines& expected) {
        if (waitUntil(patience, [&] { return desktop_.spoken().size() >= expected.size(); }) &&
            desktop_.spoken() == expected) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << testing::PrintToString(desktop_.spoken());
    }

    /// A show, a refresh, a done banner and another show, which proves that nothing of the ones before is
    /// spoken twice. The role and the full stop are Orca's own.
    void showBannersOfAllKinds() {
        Lines expected{"notification Claude is waiting for you, shop · Claude needs your permission."};
        session().claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("notification Claude is waiting for your reply, shop.");
        session().claude("Notification-idle_prompt", "a", "shop");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("notification Codex finished, handbook.");
        session().codex("codex-tui", "handbook");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("notification Claude is waiting for you, blog · Claude needs your permission.");
        session().claude("Notification-permission_prompt", "b", "blog");
        ASSERT_TRUE(speaks(expected));
        EXPECT_EQ(session().applicationOutput(), "");
    }

    DesktopSession& session() { return desktop_.session(); }

    AssistiveDesktop desktop_;
};

TEST_F(Orca, speaksEveryShowAndRefreshOnce) {
    desktop_.startBus();
    desktop_.startOrca();
    session().startApplication();
    showBannersOfAllKinds();
}

TEST_F(Orca, startedAfterTheApplicationSpeaksTheSame) {
    desktop_.startBus();
    session().startApplication();
    desktop_.startOrca();
    showBannersOfAllKinds();
}

TEST_F(Orca, startedWithItsBusAfterTheApplicationSpeaksTheSame) {
    session().startApplication();
    desktop_.startBus();
    desktop_.startOrca();
    showBannersOfAllKinds();
}

} // namespace

} // namespace corvane::test
