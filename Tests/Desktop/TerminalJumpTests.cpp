// "Go to Terminal" for terminals that do not identify themselves: found by the agent that runs in them.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Arguments = std::vector<std::string>;

class TerminalJump : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        // A process has the name of its program's file, even of a script. It records what is typed.
        const fs::path agent = desktop.home() / "bin/claude";
        writeFile(agent, "#!/bin/sh\nwhile read -r line; do printf '%s' \"$line\" >>\"$HOME/typed\"; done\n");
        fs::permissions(agent, fs::perms::owner_all);
        fs::create_directories(desktop.home() / "shop");
        fs::create_directories(desktop.home() / "blog");
        desktop.startApplication();
        desktop.screen().requestWorkspaceCount(2);
    }

    void TearDown() override {
        if (!tmuxSocket.empty()) run({"tmux", "-S", tmuxSocket, "kill-server"});
    }

    /// Starts a terminal program and waits for its window, which is on top then.
    std::uint32_t open(std::string_view windowClass, const Arguments& arguments) {
        const std::vector<std::uint32_t> before = desktop.screen().managedWindows(windowClass);
        programs.push_back(desktop.run(arguments, "terminal" + std::to_string(programs.size())));
        std::uint32_t window = 0;
        EXPECT_TRUE(waitUntil(20s,
                              [&] {
                                  for (const std::uint32_t candidate :
                                       desktop.screen().managedWindows(windowClass)) {
                                      if (std::find(before.begin(), before.end(), candidate) == before.end())
                                          window = candidate;
                                  }
                                  return window != 0 && desktop.screen().activeWindow() == window;
                              }))
            << "no window of " << arguments.front();
        return window;
    }

    std::uint32_t openXterm(const std::string& shellCommand) {
        return open("xterm", {"xterm", "-geometry", "60x20+100+300", "-e", "sh", "-c", shellCommand});
    }
    std::uint32_t openXfceTerminal(const std::string& shellCommand) {
        return open("xfce4-terminal", {"xfce4-terminal", "-x", "sh", "-c", shellCommand});
    }
    /// A terminal may show its window before its shell has started the agent.
    void awaitAgents(std::size_t count) {
        ASSERT_TRUE(waitUntil(20s, [&] { return desktop.running("claude") == count; }));
    }
    /// The same of the client of a tmux session.
    void awaitClient(const std::string& session) {
        const std::string clients = "tmux -S \"$HOME/tmux\" list-clients -t " + session + " | grep -q /dev/";
        ASSERT_TRUE(waitUntil(20s, [&] {
            return desktop.run({"sh", "-c", clients}, "program")->wait(20s) == 0;
        }));
    }
    /// A window without an agent, on top of the others.
    std::uint32_t openOther() { return openXterm("exec cat"); }

    void run(const Arguments& arguments, const std::vector<std::string>& variables = {}) {
        EXPECT_EQ(desktop.run(arguments, "program", variables)->wait(20s), 0) << arguments.front();
    }

    void leaveWorkspace(std::uint32_t window) {
        desktop.screen().requestWorkspace(1);
        ASSERT_TRUE(waitUntil(10s, [&] {
            return desktop.screen().currentWorkspace() == 1 && desktop.screen().activeWindow() != window;
        }));
    }

    void minimize(std::uint32_t window) {
        desktop.screen().requestMinimized(window);
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().isMinimized(window); }));
    }

    /// A session of this project, in a terminal with `program` as its TERM_PROGRAM, waits for the user, who
    /// clicks "Go to Terminal".
    void goToTerminal(const std::string& project, const std::string& program = "") {
        desktop.pointAway();
        desktop.claude("Notification-permission_prompt", project, project, {"TERM_PROGRAM=" + program});
        ASSERT_TRUE(desktop.shows(1, 0));
        desktop.click(primaryButton(desktop.screen().banners().front()));
        EXPECT_TRUE(desktop.shows(0, 0));
    }

    [[nodiscard]] bool becomesActive(std::uint32_t window) {
        return waitUntil(10s, [&] {
            return desktop.screen().activeWindow() == window && desktop.screen().hasFocus(window);
        });
    }

    /// Types a line, and waits until the agent has read it.
    void expectAgentToRead(const std::string& line) {
        EXPECT_EQ(desktop.type(line + "\n", 20ms)->wait(20s), 0);
        expected += line;
        const auto typed = [this] { return fileBytes(desktop.home() / "typed").value_or(""); };
        EXPECT_TRUE(waitUntil(10s, [&] { return typed() == expected; })) << typed();
    }

    DesktopSession desktop{GetParam(), Compositor::none};
    std::string tmuxSocket;
    std::string expected;
    std::list<std::unique_ptr<ChildProcess>> programs;
};

TEST_P(TerminalJump, findsTheXtermOfTheAgentElsewhereAndMinimized) {
    const std::uint32_t terminal = openXterm("cd shop && exec ../bin/claude");
    awaitAgents(1);
    openOther();
    leaveWorkspace(terminal);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(terminal));
    EXPECT_EQ(desktop.screen().currentWorkspace(), 0U);
    EXPECT_EQ(desktop.screen().workspace(terminal), 0U) << "it should have stayed on its workspace";
    expectAgentToRead("elsewhere");

    minimize(terminal);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(terminal));
    EXPECT_TRUE(waitUntil(10s, [&] { return !desktop.screen().isMinimized(terminal); }));
    expectAgentToRead("minimized");
}

TEST_P(TerminalJump, distinguishesTheWindowsOfATerminalWithOneProcessForAll) {
    const std::uint32_t shop = openXfceTerminal("cd shop && exec ../bin/claude");
    const std::uint32_t blog = openXfceTerminal("cd blog && exec ../bin/claude");
    EXPECT_EQ(programs.back()->wait(10s), 0) << "the second window belongs to the first process";
    awaitAgents(2);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(shop));
    goToTerminal("blog");
    EXPECT_TRUE(becomesActive(blog));
    leaveWorkspace(blog);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(shop));
    EXPECT_EQ(desktop.screen().currentWorkspace(), 0U);
    minimize(shop);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(shop));
    expectAgentToRead("minimized");
}

TEST_P(TerminalJump, takesTheTopmostWindowOfATerminalThatSetsNoWindowId) {
    openXfceTerminal("exec cat");
    const std::uint32_t terminal = openXfceTerminal("cd shop && unset WINDOWID && exec ../bin/claude");
    awaitAgents(1);
    openOther();
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("here");
}

TEST_P(TerminalJump, titlesDistinguishTheWindowsOfATerminalThatSetsNoWindowId) {
    const auto openTitled = [this](const std::string& folder, const std::string& title) {
        return openXfceTerminal("cd " + folder + " && unset WINDOWID && printf '\\033]0;" + title +
                                "\\007' && exec ../bin/claude");
    };
    const std::uint32_t shop = openTitled("shop", "you@host: ~/shop");
    const std::uint32_t blog = openTitled("blog", "you@host: ~/blog");
    awaitAgents(2);
    for (const auto& [window, title] : {std::pair(shop, "~/shop"), std::pair(blog, "~/blog")}) {
        ASSERT_TRUE(
            waitUntil(20s, [&] { return desktop.screen().title(window).find(title) != std::string::npos; }));
    }
    openOther();
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(shop));
    expectAgentToRead("shop");
    goToTerminal("blog");
    EXPECT_TRUE(becomesActive(blog));
}

TEST_P(TerminalJump, findsTheTerminalThatShowsATmuxSession) {
    const std::uint32_t stale = openOther();
    tmuxSocket = (desktop.home() / "tmux").string();
    run({"tmux", "-f", "/dev/null", "-S", tmuxSocket, "new-session", "-d", "exec cat"});
    // The server has the variables of another terminal, and runs another session first.
    run({"tmux", "-S", tmuxSocket, "new-session", "-d", "-s", "work", "cd shop && exec ../bin/claude"},
        {"WINDOWID=" + std::to_string(stale)});
    const std::uint32_t terminal = openXterm("exec tmux -S \"$HOME/tmux\" attach -t work");
    awaitAgents(1);
    awaitClient("work");
    openOther();
    leaveWorkspace(terminal);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("elsewhere");
    minimize(terminal);
    goToTerminal("shop");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("minimized");
}

TEST_P(TerminalJump, aNameThatMatchesNoWindowActivatesTheAgentsOwn) {
    // Like a fork of an editor that reports its parent's name.
    const std::uint32_t terminal = openXterm("cd shop && TERM_PROGRAM=vscode exec ../bin/claude");
    awaitAgents(1);
    openOther();
    goToTerminal("shop", "vscode");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("here");
}

TEST_P(TerminalJump, amongTheNamedTerminalsWindowsTheAgentsOwnIsTaken) {
    const auto openNamed = [this](const std::string& shellCommand) {
        return open("com.mitchellh.ghostty",
                    {"xterm", "-class", "com.mitchellh.ghostty", "-e", "sh", "-c", shellCommand});
    };
    const std::uint32_t terminal = openNamed("cd shop && TERM_PROGRAM=ghostty exec ../bin/claude");
    // Another agent in the same folder, in a terminal of another name, and a window of the same name on top.
    openXterm("cd shop && TERM_PROGRAM=WezTerm exec ../bin/claude");
    awaitAgents(2);
    openNamed("exec cat");
    openOther();
    goToTerminal("shop", "ghostty");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("own");
    // Without a process, only the name is known.
    openOther();
    goToTerminal("blog", "ghostty");
    EXPECT_TRUE(becomesActive(terminal)) << "it was last on top";
}

TEST_P(TerminalJump, selectsTheAgentsWindowAndPaneInTmux) {
    tmuxSocket = (desktop.home() / "tmux").string();
    run({"tmux", "-f", "/dev/null", "-S", tmuxSocket, "new-session", "-d", "-s", "work",
         "cd shop && exec ../bin/claude"});
    run({"tmux", "-S", tmuxSocket, "split-window", "-t", "work", "exec cat"});
    run({"tmux", "-S", tmuxSocket, "new-window", "-t", "work", "exec cat"});
    run({"tmux", "-S", tmuxSocket, "new-session", "-d", "-s", "other", "exec cat"});
    const std::uint32_t terminal = openXterm("exec tmux -S \"$HOME/tmux\" attach -t work");
    awaitAgents(1);
    awaitClient("work");
    openOther();
    goToTerminal("shop", "tmux");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("pane");

    // The only client now shows another session.
    run({"tmux", "-S", tmuxSocket, "switch-client", "-t", "other"});
    awaitClient("other");
    openOther();
    goToTerminal("shop", "tmux");
    EXPECT_TRUE(becomesActive(terminal));
    expectAgentToRead("session");
}

TEST_P(TerminalJump, theBannerIsDismissedWhenAWaitingAgentIsKilled) {
    openXterm("cd shop && exec ../bin/claude");
    openXterm("cd blog && exec ../bin/claude");
    awaitAgents(2);
    desktop.claude("Notification-permission_prompt", "shop", "shop", {"TERM_PROGRAM="});
    desktop.claude("Notification-permission_prompt", "blog", "blog", {"TERM_PROGRAM="});
    ASSERT_TRUE(desktop.shows(2, 0));
    programs.front().reset();
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_FALSE(waitUntil(3s, [&] { return desktop.screen().banners().size() != 1; }));
}

TEST_P(TerminalJump, withoutARunningAgentOnlyANoticeSaysSoForFourSeconds) {
    openXterm("cd blog && exec ../bin/claude");
    const std::uint32_t other = openOther();
    // Same folder, other program; same program, other folder.
    leaveWorkspace(openXterm("cd shop && exec cat"));
    const std::uint32_t active = desktop.screen().activeWindow();
    const auto notices = [&] { return desktop.screen().menus(); };
    const Rect screen = desktop.screen().workArea();
    // The window has margins for the card's shadow where windows are blended.
    const bool hasShadow = desktop.screen().isComposited();
    const Rect card{screen.x + (screen.width - 440) / 2, screen.y + 8, 440, 64};
    const Rect notice = hasShadow ? Rect{card.x - 24, card.y - 16, card.width + 48, card.height + 48} : card;
    // A busy machine may miss its four seconds, which begin after `before`.
    using Clock = std::chrono::steady_clock;
    constexpr int mostAttempts = 3;
    bool isThere = false;
    Clock::time_point before;
    for (int attempt = 0; !isThere && attempt < mostAttempts; ++attempt) {
        before = Clock::now();
        goToTerminal("shop");
        isThere = waitUntil(4s, [&] { return notices() == std::vector<Rect>{notice}; });
    }
    EXPECT_TRUE(isThere);
    EXPECT_FALSE(waitUntil(1s, [&] {
        return desktop.screen().activeWindow() != active || desktop.screen().currentWorkspace() != 1;
    }));
    const std::size_t count = notices().size();
    EXPECT_TRUE(count == 1 || Clock::now() - before >= 4s) << count;
    EXPECT_TRUE(waitUntil(10s, [&] { return notices().empty(); }));
    EXPECT_EQ(desktop.screen().activeWindow(), active);
    EXPECT_NE(active, other);
    EXPECT_TRUE(desktop.application().isRunning());
    EXPECT_EQ(desktop.applicationOutput(), "");
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, TerminalJump, testing::ValuesIn(windowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace

} // namespace corvane::test
