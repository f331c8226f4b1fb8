// The hook program, run the way agents run it.

#include "Agents/HookScript.h"
#include "Intake/EventInbox.h"
#include "Support/HookRunner.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace HookScript = corvane::HookScript;

using corvane::AgentEvent;
using corvane::AgentKind;
using corvane::CorvanePaths;
using corvane::EventKind;
using corvane::test::fileBytes;
using corvane::test::HookRunner;
using corvane::test::Launch;
using corvane::test::Outcome;

/// What an agent sees of every run.
Outcome silentSuccess() {
    return {0, "", ""};
}

/// Whether `name` consists of seconds, a hyphen, a process ID and the extension.
bool isEventName(std::string_view name) {
    const auto isNumber = [](std::string_view text) {
        return !text.empty() &&
               std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    };
    constexpr std::string_view extension = ".event";
    if (!name.ends_with(extension)) return false;
    name.remove_suffix(extension.size());
    const std::size_t hyphen = name.find('-');
    return hyphen != std::string_view::npos && isNumber(name.substr(0, hyphen)) &&
           isNumber(name.substr(hyphen + 1));
}

/// A scratch home with the hook installed; the parameter is the shell that runs it.
class HookProgram : public testing::TestWithParam<std::vector<std::string>> {
  protected:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    [[nodiscard]] Launch hook(const std::vector<std::string>& arguments, std::string input = "",
                              Environment environment = {}) const {
        Launch launch{GetParam(), std::move(input), std::move(environment)};
        launch.arguments.push_back(paths.hookScript());
        launch.arguments.insert(launch.arguments.end(), arguments.begin(), arguments.end());
        launch.environment.emplace_back("HOME", home);
        return launch;
    }

    /// The way agents go: a command line for /bin/sh.
    [[nodiscard]] Launch commandLine(const std::string& command, std::string input) const {
        return {{"/bin/sh", "-c", command}, std::move(input), {{"HOME", home}}};
    }

    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(paths.events()))
            result.push_back(entry.path().filename());
        return result;
    }

    /// The text of the only file in the inbox, which must have a proper name.
    [[nodiscard]] std::string onlyEventFile() const {
        const std::vector<std::string> found = names();
        EXPECT_EQ(found.size(), 1U);
        if (found.size() != 1) return "";
        EXPECT_TRUE(isEventName(found.front())) << found.front();
        return fileBytes(paths.events() / found.front()).value_or("");
    }

    corvane::test::ScratchFolder scratch{"scratch"};
    fs::path home = scratch / "home of you";
    CorvanePaths paths = CorvanePaths::standard(home);
    HookRunner runner{scratch.path()};

  private:
    void SetUp() override { HookScript::install(paths); }
};

INSTANTIATE_TEST_SUITE_P(Shells, HookProgram,
                         testing::Values(std::vector<std::string>{"/bin/dash"},
                                         std::vector<std::string>{"/bin/bash", "--posix"}),
                         [](const auto& shell) { return shell.param.size() == 1 ? "dash" : "bash"; });

TEST_P(HookProgram, writesStandardInputUnchangedAfterItsHeader) {
    using std::string_literals::operator""s;
    const std::string header = "corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n";
    for (const std::string& payload :
         {R"({"hook_event_name":"Stop"})"s, "{}\n"s, ""s, " \r\n\t\\n %s $HOME `x`\n\n"s, "\0\xFF\x01"s,
          std::string(300'000, 'x')}) {
        EXPECT_EQ(runner.run(hook({}, payload)), silentSuccess());
        EXPECT_EQ(onlyEventFile(), header + payload);
        static_cast<void>(corvane::EventInbox{paths.events()}.drain());
    }
}

TEST_P(HookProgram, takesTheSourceFromItsFirstArgument) {
    EXPECT_EQ(runner.run(hook({"claude"}, "{}")), silentSuccess());
    EXPECT_EQ(onlyEventFile(), "corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n{}");
    fs::remove(paths.events() / names().front());
    EXPECT_EQ(runner.run(hook({"", "x"}, "{}")), silentSuccess());
    EXPECT_EQ(onlyEventFile(), "corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n{}");
    fs::remove(paths.events() / names().front());
    EXPECT_EQ(runner.run(hook({"other", "x"}, "{}")), silentSuccess());
    EXPECT_EQ(onlyEventFile(), "corvane-event 1\nsource=other\nterm=\nbundle=\n---\n{}");
}

TEST_P(HookProgram, writesTheLastArgumentForCodex) {
    const std::string json = R"({"type":"agent-turn-complete","x":"%d \\n $HOME 'y' ü"})";
    EXPECT_EQ(runner.run(hook({"codex", json}, "not read")), silentSuccess());
    EXPECT_EQ(onlyEventFile(), "corvane-event 1\nsource=codex\nterm=\nbundle=\n---\n" + json + "\n");
    fs::remove(paths.events() / names().front());
    EXPECT_EQ(runner.run(hook({"codex", "--flag", "first", json}, "not read")), silentSuccess());
    EXPECT_EQ(onlyEventFile(), "corvane-event 1\nsource=codex\nterm=\nbundle=\n---\n" + json + "\n");
}

TEST_P(HookProgram, leavesStandardInputUnreadForCodex) {
    Launch launch = hook({}, "the whole input");
    std::string command;
    for (const std::string& word : launch.arguments)
        command += "'" + word + "' ";
    launch.arguments = {"/bin/sh", "-c", command + "codex '{}'; cat"};
    EXPECT_EQ(runner.run(launch), (Outcome{0, "the whole input", ""}));
    EXPECT_TRUE(onlyEventFile().ends_with("---\n{}\n"));
}

TEST_P(HookProgram, writesTheTerminalOnOneLineEach) {
    EXPECT_EQ(runner.run(hook({}, "{}",
                              {{"TERM_PROGRAM", "\nApple_\nTerminal\n\n"},
                               {"__CFBundleIdentifier", "com.apple\n.Terminal=%s\\n\n"}})),
              silentSuccess());
    EXPECT_EQ(
        onlyEventFile(),
        "corvane-event 1\nsource=claude\nterm=Apple_Terminal\nbundle=com.apple.Terminal=%s\\n\n---\n{}");
}

TEST_P(HookProgram, createsAMissingInbox) {
    fs::remove(paths.events());
    EXPECT_EQ(runner.run(hook({}, "{}")), silentSuccess());
    EXPECT_EQ(names().size(), 1U);
}

TEST_P(HookProgram, exitsQuietlyIfTheInboxCannotBeCreated) {
    fs::remove(paths.events());
    corvane::test::writeFile(paths.events(), "in the way");
    EXPECT_EQ(runner.run(hook({}, "{}")), silentSuccess());
    EXPECT_EQ(fileBytes(paths.events()), "in the way");
}

TEST_P(HookProgram, writesNoEventIntoAnInboxThatIsNotWritable) {
    Launch launch = hook({}, "{}");
    if (geteuid() == 0) {
        if (!fs::exists("/usr/bin/setpriv"))
            GTEST_SKIP() << "root can write everywhere, and setpriv is missing";
        const std::vector<std::string> asNobody{"/usr/bin/setpriv", "--reuid=65534", "--regid=65534",
                                                "--clear-groups"};
        launch.arguments.insert(launch.arguments.begin(), asNobody.begin(), asNobody.end());
    }
    fs::permissions(scratch.path().parent_path(), fs::perms(0755));
    fs::permissions(paths.events(), fs::perms(0555));
    const Outcome outcome = runner.run(launch);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    // The shell reports the file that it cannot create before standard error is redirected.
    EXPECT_TRUE(names().empty());
    fs::permissions(paths.events(), fs::perms(0777));
    EXPECT_EQ(runner.run(launch), silentSuccess()) << "the folder's permissions were to blame";
    EXPECT_EQ(names().size(), 1U);
}

TEST_P(HookProgram, leavesNoEventOnAFullDisk) {
    // A small file system in place of the home's library, in a mount namespace that ends with the program.
    const fs::path hookOutside = scratch / "hook";
    fs::copy_file(paths.hookScript(), hookOutside);
    corvane::test::writeFile(scratch / "payload", std::string(1'000'000, 'x'));
    std::string shell;
    for (const std::string& word : GetParam())
        shell += word + " ";
    const std::string script =
        R"(
        mount -t tmpfs -o size=64k none "$HOME/Library" || exit 77
        mkdir -p "$HOME/Library/Application Support/Corvane/events"
        cd "$HOME/Library/Application Support/Corvane/events"
        argument=$(head -c 100000 ../../../../../payload)
        run() { )" +
        shell + R"( ../../../../../hook "$@"; echo "$1: status $?, $(ls | wc -l) events"; rm -f .[0-9]*; }
        run claude < ../../../../../payload
        run codex "$argument"
        cat /dev/zero > ../rest 2>/dev/null
        echo '{}' | run claude
        run codex '{}'
        rm ../rest
        echo '{}' | run claude
    )";
    std::vector<std::string> arguments{"/usr/bin/unshare", geteuid() == 0 ? "-m" : "-Urm", "/bin/sh", "-c",
                                       script};
    if (!fs::exists(arguments.front())) GTEST_SKIP() << "no unshare to make a mount namespace";
    const Outcome outcome = runner.run({arguments, "", {{"HOME", home}}});
    if (outcome.status == 77 || outcome.status == 1) {
        GTEST_SKIP() << "a small disk cannot be mounted here: " << outcome.errors;
    }
    EXPECT_EQ(outcome, (Outcome{0,
                                "claude: status 0, 0 events\n"
                                "codex: status 0, 0 events\n"
                                "claude: status 0, 0 events\n"
                                "codex: status 0, 0 events\n"
                                "claude: status 0, 1 events\n",
                                ""}));
}

/// The command lines in the agents' configurations, run by the system's shell.
class HookCommand : public HookProgram {};

INSTANTIATE_TEST_SUITE_P(System, HookCommand, testing::Values(std::vector<std::string>{"/bin/sh"}),
                         [](const auto& /*shell*/) { return "sh"; });

TEST_P(HookCommand, carriesARealClaudePayloadIntoTheInbox) {
    const std::string payload =
        corvane::test::testData("agent-payloads/claude-Notification-permission_prompt.json");
    Launch launch = commandLine(HookScript::command(AgentKind::claude, paths), payload);
    launch.environment.emplace_back("TERM_PROGRAM", "iTerm.app");
    launch.environment.emplace_back("__CFBundleIdentifier", "com.googlecode.iterm2");
    EXPECT_EQ(runner.run(launch), silentSuccess());
    const std::vector<AgentEvent> events = corvane::EventInbox{paths.events()}.drain();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events.front(), (AgentEvent{AgentKind::claude, EventKind::needsPermission,
                                          "c4cceedd-06b2-47e3-9e16-6f93b966c542", "/home/you/project",
                                          "Claude needs your permission", "com.googlecode.iterm2",
                                          "iTerm.app", events.front().date}));
    EXPECT_TRUE(names().empty());
}

TEST_P(HookCommand, carriesARealCodexPayloadIntoTheInbox) {
    const std::string payload =
        corvane::test::testData("agent-payloads/codex-agent-turn-complete-codex-tui.json");
    EXPECT_EQ(runner.run({{paths.hookScript(), "codex", payload}, "", {{"HOME", home}}}), silentSuccess());
    const std::vector<AgentEvent> events = corvane::EventInbox{paths.events()}.drain();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events.front().source, AgentKind::codex);
    EXPECT_EQ(events.front().kind, EventKind::finished);
    EXPECT_EQ(events.front().sessionID, "01a1f9b3-c966-7442-887a-6a33e2af6043");
}

TEST_P(HookCommand, losesNothingWhenAThousandRunInBatchesOfTwoHundred) {
    const std::string command = HookScript::command(AgentKind::claude, paths);
    const corvane::EventInbox inbox{paths.events()};
    std::set<std::string> expected;
    std::set<std::string> delivered;
    for (int batch = 0; batch < 5; ++batch) {
        for (int i = 0; i < 200; ++i) {
            const std::string session = std::to_string(batch) + "-" + std::to_string(i);
            expected.insert(session);
            runner.start(
                commandLine(command, R"({"hook_event_name":"Stop","session_id":")" + session + "\"}\n"));
        }
        for (const Outcome& outcome : runner.finish())
            ASSERT_EQ(outcome, silentSuccess());
        const std::vector<AgentEvent> events = inbox.drain();
        EXPECT_EQ(events.size(), 200U);
        for (const AgentEvent& event : events)
            delivered.insert(event.sessionID);
    }
    EXPECT_EQ(delivered, expected);
    EXPECT_TRUE(names().empty());
}

TEST_P(HookCommand, losesNothingWhenTheInboxIsDrainedMeanwhile) {
    const std::string command = HookScript::command(AgentKind::claude, paths);
    const corvane::EventInbox inbox{paths.events()};
    std::vector<std::string> delivered;
    const auto drain = [&] {
        for (const AgentEvent& event : inbox.drain())
            delivered.push_back(event.sessionID);
    };
    std::set<std::string> expected;
    for (int i = 0; i < 100; ++i) {
        const std::string session = std::to_string(i);
        expected.insert(session);
        runner.start(commandLine(command, R"({"hook_event_name":"Stop","session_id":")" + session + "\"}\n"));
        drain();
    }
    for (const Outcome& outcome : runner.finish())
        EXPECT_EQ(outcome, silentSuccess());
    drain();
    EXPECT_EQ(delivered.size(), expected.size());
    EXPECT_EQ(std::set<std::string>(delivered.begin(), delivered.end()), expected);
    EXPECT_TRUE(names().empty());
}

} // namespace
