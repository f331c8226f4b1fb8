// What Orca speaks about banners, according to its own debug output.

#include "Desktop/Accessibility/AssistiveDesktop.h"

#include <gtest/gtest.h>

namespace corvane::test {

namespace {

using Lines = std::vector<std::string>;

constexpr std::chrono::seconds patience{20};

class Orca : public testing::Test {
  protected:
    /// Whether Orca speaks exactly these notifications within the time limit. The role is Orca's own: Orca 43
    /// speaks it together with the words and puts a full stop after them, Orca 48 speaks it first.
    testing::AssertionResult speaks(const Lines& expected) {
        Lines together;
        Lines apart;
        for (const std::string& words : expected) {
            together.push_back("notification " + words + ".");
            apart.insert(apart.end(), {"notification", words});
        }
        Lines spoken;
        if (waitUntil(patience, [&] {
                spoken = desktop_.spoken();
                return spoken == together || spoken == apart;
            }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << testing::PrintToString(spoken);
    }

    /// A show, a refresh, a done banner and another show, which proves that none of the previous ones is
    /// spoken twice.
    void showBannersOfAllKinds() {
        Lines expected{"Claude is waiting for you, shop · Claude needs your permission"};
        session().claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("Claude is waiting for your reply, shop");
        session().claude("Notification-idle_prompt", "a", "shop");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("Codex finished, handbook");
        session().codex("codex-tui", "handbook");
        ASSERT_TRUE(speaks(expected));
        expected.emplace_back("Claude is waiting for you, blog · Claude needs your permission");
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
    desktop_.meetApplication();
    showBannersOfAllKinds();
}

TEST_F(Orca, startedAfterTheApplicationSpeaksTheSame) {
    desktop_.startBus();
    session().startApplication();
    desktop_.startOrca();
    desktop_.meetApplication();
    showBannersOfAllKinds();
}

TEST_F(Orca, startedWithItsBusAfterTheApplicationSpeaksTheSame) {
    session().startApplication();
    desktop_.startBus();
    desktop_.startOrca();
    desktop_.meetApplication();
    showBannersOfAllKinds();
}

} // namespace

} // namespace corvane::test
