// One instance per user and session, however often it is started.

#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

struct Bus {
    const char* name;
    std::vector<std::string> variables;
};

class SecondStart : public testing::TestWithParam<Bus> {
  protected:
    std::unique_ptr<ChildProcess> start(const std::string& log,
                                        const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{CORVANE_PROGRAM};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return desktop.run(arguments, log, GetParam().variables);
    }

    [[nodiscard]] bool hasMainWindow() {
        return waitUntil(20s, [this] { return desktop.screen().managedWindows("corvane").size() == 1; });
    }

    /// Whether an application reads the inbox.
    [[nodiscard]] bool isServing() {
        writeFile(desktop.paths().events() / "0.event", "");
        return waitUntil(20s, [this] { return desktop.inbox().empty(); });
    }

    DesktopSession desktop;
};

TEST_P(SecondStart, opensTheWindowOfTheFirstAndExitsWithStatusZero) {
    const auto first = start("first");
    ASSERT_TRUE(isServing());
    ASSERT_TRUE(desktop.screen().managedWindows("corvane").empty());
    const auto second = start("second");
    EXPECT_EQ(second->wait(20s), 0);
    EXPECT_TRUE(hasMainWindow());
    EXPECT_TRUE(first->isRunning());
}

TEST_P(SecondStart, atLoginLeavesTheFirstAloneAndExitsWithStatusZero) {
    const auto first = start("first");
    ASSERT_TRUE(isServing());
    EXPECT_EQ(start("second", {"--autostart"})->wait(20s), 0);
    ASSERT_TRUE(isServing());
    ASSERT_TRUE(isServing()) << "a second later";
    EXPECT_TRUE(desktop.screen().managedWindows("corvane").empty());
}

TEST_P(SecondStart, movesTheWindowToTheUsersWorkspace) {
    const auto first = start("first");
    ASSERT_TRUE(isServing());
    EXPECT_EQ(start("second")->wait(20s), 0);
    ASSERT_TRUE(hasMainWindow());
    const std::uint32_t window = desktop.screen().managedWindows("corvane").front();
    desktop.screen().requestWorkspaceCount(2);
    desktop.screen().requestWorkspace(1);
    ASSERT_TRUE(waitUntil(10s, [this] { return desktop.screen().currentWorkspace() == 1; }));
    ASSERT_EQ(desktop.screen().workspace(window), 0U);
    EXPECT_EQ(start("third")->wait(20s), 0);
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().workspace(window) == 1; }));
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().activeWindow() == window; }));
    EXPECT_EQ(desktop.screen().currentWorkspace(), 1U);
}

TEST_P(SecondStart, ofManyAtTheSameInstantExactlyOneStays) {
    std::list<std::unique_ptr<ChildProcess>> processes;
    for (int i = 0; i < 4; ++i)
        processes.push_back(start("start" + std::to_string(i)));
    const auto running = [&processes] {
        return std::count_if(processes.begin(), processes.end(),
                             [](const auto& process) { return process->isRunning(); });
    };
    ASSERT_TRUE(waitUntil(20s, [&] { return running() == 1; }));
    for (const auto& process : processes) {
        if (!process->isRunning()) {
            EXPECT_EQ(process->wait(20s), 0);
        }
    }
    EXPECT_TRUE(isServing());
    EXPECT_EQ(running(), 1);
    EXPECT_TRUE(hasMainWindow()) << "the others have asked it to open the window";
}

// The second one may ask before the first has created its windows.
TEST_P(SecondStart, ofTwoAtTheSameInstantTheOneThatStaysOpensItsWindow) {
    for (int round = 0; round < 5; ++round) {
        const auto one = start("one");
        const auto other = start("other");
        ASSERT_TRUE(waitUntil(20s, [&] { return !one->isRunning() || !other->isRunning(); }));
        const bool isOneLeft = one->isRunning();
        EXPECT_EQ((isOneLeft ? *other : *one).wait(10s), 0);
        ASSERT_TRUE((isOneLeft ? *one : *other).isRunning());
        ASSERT_TRUE(hasMainWindow()) << "round " << round;
    }
}

TEST_P(SecondStart, aCrashDoesNotPreventTheNextStart) {
    {
        const auto first = start("first");
        ASSERT_TRUE(isServing());
        first->signal(SIGKILL);
        EXPECT_EQ(first->wait(10s), 128 + SIGKILL);
    }
    const auto next = start("next");
    EXPECT_TRUE(isServing());
    EXPECT_TRUE(next->isRunning());
}

INSTANTIATE_TEST_SUITE_P(
    Session, SecondStart,
    testing::Values(Bus{"WithABus", {}},
                    Bus{"WithoutABus", {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"}},
                    Bus{"WithoutABusOrARuntimeFolder",
                        {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent", "XDG_RUNTIME_DIR="}}),
    [](const auto& instance) { return std::string(instance.param.name); });

} // namespace
} // namespace corvane::test
