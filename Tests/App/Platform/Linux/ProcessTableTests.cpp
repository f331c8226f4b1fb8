#include "Platform/Linux/AgentProcesses.h"
#include "Platform/Linux/ProcessTable.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class ProcessTableTest : public testing::Test {
  protected:
    void add(pid_t process, pid_t parent, const std::string& commandName, const std::string& commandLine,
             const std::string& directory, const std::string& environment = {}) {
        const fs::path folder = root_.path() / std::to_string(process);
        test::writeFile(folder / "comm", commandName + "\n");
        test::writeFile(folder / "cmdline", commandLine);
        test::writeFile(folder / "environ", environment);
        test::writeFile(folder / "stat",
                        std::to_string(process) + " (" + commandName + ") S " + std::to_string(parent) +
                            " 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " + std::to_string(process * 100) + " 0 0");
        fs::create_symlink(directory, folder / "cwd");
    }

    test::ScratchFolder root_{"proc"};
    ProcessTable table_{root_.path()};
};

TEST_F(ProcessTableTest, aProgramIsKnownByItsCommandNameOrItsScript) {
    add(10, 1, "claude", "claude\0"s, "/w/shop");
    add(11, 1, "node", "node\0/usr/bin/claude\0--resume\0"s, "/w/shop");
    add(12, 1, "MainThread", "/opt/claude\0"s, "/w/shop");
    add(13, 1, "vim", "vim\0notes\0claude\0"s, "/w/shop");
    add(14, 1, "claude-helper", "claude-helper\0"s, "/w/shop");
    EXPECT_EQ(table_.running("claude", "/w/shop"), (std::vector<pid_t>{12, 11, 10}));
}

// As when a process ends between the opening and the reading of its files.
TEST_F(ProcessTableTest, filesThatOpenButCannotBeReadCountAsEmpty) {
    add(10, 1, "claude", "claude\0"s, "/w/shop");
    for (const char* const name : {"comm", "cmdline", "environ", "stat"}) {
        fs::remove(root_ / "10" / name);
        fs::create_directory(root_ / "10" / name);
    }
    EXPECT_TRUE(table_.running("claude", "/w/shop").empty());
    EXPECT_EQ(table_.ancestry(10), std::vector<pid_t>{10});
    EXPECT_EQ(table_.startTime(10), std::nullopt);
    EXPECT_EQ(table_.variable(10, "TERM"), std::nullopt);
    EXPECT_FALSE(table_.hasTerminal(10));
}

TEST_F(ProcessTableTest, onlyTheSessionsDirectoryCounts) {
    add(10, 1, "claude", "claude\0"s, "/w/shop");
    add(11, 1, "claude", "claude\0"s, "/w/shop/sub");
    EXPECT_EQ(table_.running("claude", "/w/shop"), std::vector<pid_t>{10});
    EXPECT_TRUE(table_.running("claude", "").empty());
    EXPECT_TRUE(table_.running("codex", "/w/shop").empty());
}

TEST_F(ProcessTableTest, theSessionsDirectoryMayBeALink) {
    const test::ScratchFolder work("work");
    fs::create_directory(work / "shop");
    fs::create_directory_symlink(work / "shop", work / "link");
    add(10, 1, "claude", "claude\0"s, fs::canonical(work / "shop").string());
    EXPECT_EQ(table_.running("claude", (work / "link").string()), std::vector<pid_t>{10});
    EXPECT_EQ(table_.running("claude", (work / "shop/").string()), std::vector<pid_t>{10});
    EXPECT_TRUE(table_.running("claude", "shop").empty());
}

TEST_F(ProcessTableTest, ancestryGoesUpToTheFirstProcess) {
    add(1, 0, "init", "init\0"s, "/");
    add(20, 1, "xterm", "xterm\0"s, "/");
    add(30, 20, "a) b (c", "bash\0"s, "/");
    add(40, 30, "claude", "claude\0"s, "/w/shop");
    EXPECT_EQ(table_.ancestry(40), (std::vector<pid_t>{40, 30, 20, 1}));
}

TEST_F(ProcessTableTest, ancestryEndsWhereNothingCanBeRead) {
    add(40, 30, "claude", "claude\0"s, "/w/shop");
    EXPECT_EQ(table_.ancestry(40), (std::vector<pid_t>{40, 30}));
    // A process ID that is reused during the search may cause a cycle.
    add(30, 40, "bash", "bash\0"s, "/");
    EXPECT_EQ(table_.ancestry(40), (std::vector<pid_t>{40, 30}));
}

TEST_F(ProcessTableTest, aProcessIsDistinguishedFromALaterOneByItsStartTime) {
    add(40, 30, "a) b (c", "claude\0"s, "/w/shop");
    EXPECT_EQ(table_.startTime(40), 4'000U);
    EXPECT_EQ(table_.startTime(41), std::nullopt);
    add(42, 30, "claude", "claude\0"s, "/w/shop");
    test::writeFile(root_.path() / "42/stat",
                    "42 (claude) Z 30 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 4200 0 0");
    EXPECT_EQ(table_.startTime(42), std::nullopt) << "a zombie has ended";
    test::writeFile(root_.path() / "42/stat", "42 (claude) R 30");
    EXPECT_EQ(table_.startTime(42), std::nullopt);
}

TEST_F(ProcessTableTest, servicesBelongToNoTerminal) {
    add(40, 30, "claude", "claude\0"s, "/w/shop");
    EXPECT_FALSE(table_.hasTerminal(40));
    EXPECT_FALSE(table_.hasTerminal(41));
    test::writeFile(root_.path() / "40/stat", "40 (claude) S 30 40 40 34816 40");
    EXPECT_TRUE(table_.hasTerminal(40));
}

TEST_F(ProcessTableTest, theAgentsProcessesAreKnownWhileTheyRun) {
    add(40, 30, "claude", "claude\0"s, "/w/shop");
    add(41, 30, "claude", "claude\0"s, "/w/blog");
    const LinuxAgentProcesses processes(table_);
    ASSERT_EQ(processes.running("claude", "/w/shop"), (std::vector<ProcessIdentity>{{40, 4'000}}));
    EXPECT_TRUE(processes.isRunning({40, 4'000}));
    EXPECT_FALSE(processes.isRunning({40, 3'999}));
    fs::remove(root_ / "40" / "stat");
    fs::create_directory(root_ / "40" / "stat");
    EXPECT_TRUE(processes.isRunning({40, 4'000})) << "what cannot be read proves no end";
    fs::remove_all(root_.path() / "40");
    EXPECT_FALSE(processes.isRunning({40, 4'000}));
    EXPECT_TRUE(processes.running("claude", "/w/shop").empty());
}

TEST_F(ProcessTableTest, thisProcessIsFoundInTheSystemsOwnTable) {
    const LinuxAgentProcesses processes;
    const std::string directory = fs::current_path().string();
    const ProcessTable table;
    const std::optional<std::uint64_t> started = table.startTime(getpid());
    ASSERT_TRUE(started);
    const std::vector<ProcessIdentity> running = processes.running("AppTests", directory);
    EXPECT_NE(std::find(running.begin(), running.end(), ProcessIdentity{getpid(), *started}), running.end());
}

TEST_F(ProcessTableTest, theEnvironmentIsSearchedByWholeNames) {
    add(10, 1, "claude", "claude\0"s, "/w", "XTMUX=no\0TMUX=/tmp/tmux-1/default,5,0\0EMPTY=\0"s);
    EXPECT_EQ(table_.variable(10, "TMUX"), "/tmp/tmux-1/default,5,0");
    EXPECT_EQ(table_.variable(10, "EMPTY"), "");
    EXPECT_EQ(table_.variable(10, "MUX"), std::nullopt);
    EXPECT_EQ(table_.variable(99, "TMUX"), std::nullopt);
}

TEST_F(ProcessTableTest, brokenFilesAreNoProcess) {
    test::writeFile(root_.path() / "12/stat", "12 (");
    test::writeFile(root_.path() / "self/comm", "claude\n");
    EXPECT_EQ(table_.ancestry(12), std::vector<pid_t>{12});
    EXPECT_TRUE(table_.running("claude", "/w").empty());
}

TEST(ProcessTable, knowsThisProcess) {
    const ProcessTable table;
    const auto line = table.ancestry(getpid());
    ASSERT_GE(line.size(), 2U);
    EXPECT_EQ(line[0], getpid());
    EXPECT_EQ(line[1], getppid());
}

} // namespace
} // namespace corvane
