#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/HookScript.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
namespace faults = test::faults;
using files::FileError;
using test::fileBytes;
using test::writeFile;

const std::string oldClaude = R"({"model":"opus","hooks":{"Stop":[{"hooks":[{"command":"say"}]}]}})";
const std::string oldCodex = "model = \"o3\"\n\n[tui]\nnotifications = true\n";

/// One operation on one state of an agent's file.
struct Scenario {
    std::string_view name;
    AgentKind kind;
    bool connects;
    std::optional<std::string> old; ///< The file's bytes; none without a file.
    bool linked;                    ///< The file is a link into another folder.
};

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

const std::string somewhere = "/x/Corvane/bin/corvane-hook";

const std::array scenarios{
    Scenario{"connectClaude", AgentKind::claude, true, oldClaude, false},
    Scenario{"connectCodexThroughALink", AgentKind::codex, true, oldCodex, true},
    Scenario{"firstConnect", AgentKind::claude, true, std::nullopt, false},
    Scenario{"disconnectClaudeThroughALink", AgentKind::claude, false,
             ClaudeSettingsEditor::install(oldClaude, somewhere), true},
    Scenario{"disconnectCodex", AgentKind::codex, false, CodexConfigEditor::install(oldCodex, somewhere),
             false},
};

/// A home in the scenario's initial state, and what it may contain at the end.
class Stage {
  public:
    explicit Stage(const Scenario& scenario)
        : scenario_(scenario) {
        if (scenario.old && scenario.linked) {
            writeFile(target_, *scenario.old);
            fs::create_directories(file_.parent_path());
            fs::create_symlink("../dotfiles/target", file_);
        } else if (scenario.old) {
            writeFile(file_, *scenario.old);
        }
        if (scenario.old) fs::permissions(file_, permissions_);
    }

    void perform() const {
        if (scenario_.connects) {
            static_cast<void>(connector_.connect(scenario_.kind, test::noon));
        } else {
            connector_.disconnect(scenario_.kind);
        }
    }

    [[nodiscard]] std::optional<std::string> bytes() const { return fileBytes(file_); }
    [[nodiscard]] const std::optional<std::string>& oldBytes() const { return scenario_.old; }

    [[nodiscard]] std::string newBytes() const {
        const bool claude = scenario_.kind == AgentKind::claude;
        if (!scenario_.connects) {
            return claude ? ClaudeSettingsEditor::uninstall(*scenario_.old)
                          : CodexConfigEditor::uninstall(*scenario_.old);
        }
        return claude ? ClaudeSettingsEditor::install(
                            scenario_.old, HookScript::command(AgentKind::claude, connector_.paths()))
                      : CodexConfigEditor::install(scenario_.old, connector_.paths().hookScript().string());
    }

    /// A file that cannot be read counts as missing: then its bytes are kept under another name.
    [[nodiscard]] bool isFreshWithTheOldKept() const {
        const bool claude = scenario_.kind == AgentKind::claude;
        const std::string fresh =
            claude ? ClaudeSettingsEditor::install(std::nullopt,
                                                   HookScript::command(scenario_.kind, connector_.paths()))
                   : CodexConfigEditor::install(std::nullopt, connector_.paths().hookScript().string());
        if (!scenario_.connects || !scenario_.old || bytes() != fresh) return false;
        const fs::path folder = file_.parent_path();
        const auto names = test::backupsIn(folder);
        return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return fileBytes(folder / name) == scenario_.old;
        });
    }

    [[nodiscard]] bool isUntouchedDisconnect() const {
        return !scenario_.connects && bytes() == scenario_.old;
    }

    void expectLinkKept() const {
        if (scenario_.linked) {
            EXPECT_TRUE(fs::is_symlink(file_));
        }
    }

    void expectPermissionsKept() const {
        if (scenario_.old && !isFreshWithTheOldKept()) {
            EXPECT_EQ(fs::status(file_).permissions(), permissions_);
        }
    }

    /// Every backup holds all of the old bytes.
    void expectWholeBackups() const {
        for (const std::string& name : test::backupsIn(file_.parent_path())) {
            EXPECT_EQ(fileBytes(file_.parent_path() / name), scenario_.old) << name;
        }
    }

    void expectNoTemporaryFile() const {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(home_.path())) {
            EXPECT_FALSE(entry.path().filename().string().starts_with(".corvane-")) << entry.path();
        }
    }

    void expectWorksAfterwards() const {
        const bool fresh = isFreshWithTheOldKept();
        perform();
        EXPECT_TRUE(fresh ? isFreshWithTheOldKept() : bytes() == newBytes());
        EXPECT_EQ(connector_.isConnected(scenario_.kind), scenario_.connects);
    }

  private:
    // Not those that a new file gets.
    const fs::perms permissions_ = fs::perms(0640);
    const Scenario& scenario_;
    test::ScratchFolder home_ = test::inMemory();
    AgentConnector connector_{home_.path()};
    fs::path file_ = connector_.configFile(scenario_.kind);
    fs::path target_ = home_ / "dotfiles/target";
};

class AgentConnectorFaults : public testing::TestWithParam<Scenario> {
  protected:
    /// Runs the scenario under `plan` and checks what must hold after every failure. Returns false if the
    /// plan's call was never reached.
    bool survives(const faults::Plan& plan, bool mustSucceed = false) {
        const Stage stage(GetParam());
        bool failed = false;
        faults::arm(plan);
        try {
            stage.perform();
        } catch (const FileError&) {
            failed = true;
        }
        const bool reached = faults::disarm() >= plan.call;
        if (failed) {
            EXPECT_EQ(stage.bytes(), stage.oldBytes()) << "a failure changed the file";
            EXPECT_FALSE(mustSucceed);
        } else {
            EXPECT_TRUE(stage.bytes() == stage.newBytes() ||
                        (!mustSucceed && (stage.isFreshWithTheOldKept() || stage.isUntouchedDisconnect())));
        }
        stage.expectLinkKept();
        stage.expectPermissionsKept();
        stage.expectWholeBackups();
        stage.expectNoTemporaryFile();
        stage.expectWorksAfterwards();
        return reached;
    }

    /// Kills a child at one point of the scenario, which `run` runs in the child; checks the state after
    /// that.
    template <typename Run>
    bool survivesKill(const Run& run) {
        const Stage stage(GetParam());
        const int status = run(stage);
        EXPECT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
        EXPECT_TRUE(stage.bytes() == stage.oldBytes() || stage.bytes() == stage.newBytes());
        stage.expectLinkKept();
        stage.expectWorksAfterwards();
        return WIFSIGNALED(status);
    }
};

TEST_P(AgentConnectorFaults, everyCallFailsOnceWithEveryError) {
    for (const int error : {EIO, ENOSPC, EDQUOT, EROFS, EACCES, EPERM, EMFILE, ENOMEM, EXDEV, EINVAL}) {
        int call = 1;
        for (; survives({call, faults::Action::fail, error}); ++call) {
            ASSERT_FALSE(HasFailure()) << "errno " << error << " at call " << call;
        }
        EXPECT_GT(call, 20);
    }
}

TEST_P(AgentConnectorFaults, everyFunctionFailsFromEveryCallOn) {
    for (const int error : {EIO, ENOSPC, EACCES, EROFS}) {
        for (int call = 1; survives({call, faults::Action::keepFailing, error}); ++call) {
            ASSERT_FALSE(HasFailure()) << "errno " << error << " from call " << call;
        }
    }
}

TEST_P(AgentConnectorFaults, interruptedAndPartialCallsAreContinued) {
    for (int call = 1; survives({call, faults::Action::writeLittle, 0}, true); ++call) {
        ASSERT_FALSE(HasFailure()) << "one byte at call " << call;
    }
    bool interruptible = false;
    const auto observer = [&](std::string_view function, int /*descriptor*/) {
        interruptible = function == "open" || function == "read" || function == "write" ||
                        function == "fsync" || function == "close";
    };
    // The first pass finds the calls that a signal can interrupt.
    std::vector<bool> hit;
    survives({0, faults::Action::fail, 0, [&](std::string_view function, int descriptor) {
                  observer(function, descriptor);
                  hit.push_back(interruptible);
              }});
    ASSERT_GT(std::count(hit.begin(), hit.end(), true), 5);
    for (std::size_t i = 0; i < hit.size(); ++i) {
        if (hit[i]) survives({static_cast<int>(i) + 1, faults::Action::fail, EINTR}, true);
        ASSERT_FALSE(HasFailure()) << "interrupted at call " << i + 1;
    }
}

TEST_P(AgentConnectorFaults, killedAroundEveryCallLeavesOldOrNewBytes) {
    for (const faults::Action action : {faults::Action::killBefore, faults::Action::killAfter}) {
        const auto killedAt = [&](int call) {
            return survivesKill([&](const Stage& stage) {
                const pid_t child = fork();
                if (child == 0) {
                    faults::arm({call, action});
                    stage.perform();
                    _exit(0);
                }
                int status = 0;
                EXPECT_EQ(waitpid(child, &status, 0), child);
                return status;
            });
        };
        int call = 1;
        for (; killedAt(call); ++call)
            ASSERT_FALSE(HasFailure()) << "call " << call;
        EXPECT_GT(call, 20);
    }
}

/// Runs `body` in a child and kills it at its `stop`th entry to or return from any system call. Returns the
/// child's status; none where a child cannot be traced.
std::optional<int> killAtStop(int stop, const std::function<void()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(99);
        raise(SIGSTOP);
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) return std::nullopt;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL); // NOLINT(cppcoreguidelines-pro-type-vararg)
    for (int i = 0; i < stop; ++i) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr); // NOLINT(cppcoreguidelines-pro-type-vararg)
        waitpid(child, &status, 0);
        if (WIFEXITED(status) || WIFSIGNALED(status)) return status;
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return status;
}

TEST_P(AgentConnectorFaults, killedAtAnySystemCallLeavesOldOrNewBytes) {
    if (!killAtStop(1, [] {})) GTEST_SKIP() << "this system does not let a child be traced";
    int stop = 1;
    const auto killed = [&] {
        return survivesKill(
            [&](const Stage& stage) { return killAtStop(stop, [&] { stage.perform(); }).value(); });
    };
    for (; killed(); ++stop)
        ASSERT_FALSE(HasFailure()) << "stop " << stop;
    EXPECT_GT(stop, 40);
}

// NOLINTNEXTLINE(cert-err58-cpp)
INSTANTIATE_TEST_SUITE_P(Scenarios, AgentConnectorFaults, testing::ValuesIn(scenarios),
                         [](const auto& each) { return std::string(each.param.name); });

/// Connects over a file of mode 0 at every fault, as an ordinary user: the file itself must always be found
/// again.
TEST(AgentConnectorUnreadable, theOldFileIsNeverLostWhateverFails) {
    const test::ScratchFolder owned;
    test::asOrdinaryUser(owned.path(), [] {
        const auto keepsTheOldFile = [](const faults::Plan& plan, bool killed) {
            const test::ScratchFolder home = test::inMemory();
            const AgentConnector connector(home.path());
            const fs::path file = connector.configFile(AgentKind::claude);
            writeFile(file, oldClaude);
            fs::permissions(file, fs::perms::none);
            const auto inode = files::state(file).number;
            bool reached = false;
            bool failed = false;
            const auto connect = [&] {
                faults::arm(plan);
                try {
                    static_cast<void>(connector.connect(AgentKind::claude, test::noon));
                } catch (const FileError&) {
                    failed = true;
                }
                reached = faults::disarm() >= plan.call;
            };
            if (killed) {
                const pid_t child = fork();
                if (child == 0) {
                    connect();
                    _exit(0);
                }
                int status = 0;
                EXPECT_EQ(waitpid(child, &status, 0), child);
                reached = WIFSIGNALED(status);
            } else {
                connect();
            }
            const bool untouched = files::state(file).number == inode;
            const std::string fresh = ClaudeSettingsEditor::install(
                std::nullopt, HookScript::command(AgentKind::claude, connector.paths()));
            bool kept = false;
            for (const std::string& name : test::namesIn(file.parent_path())) {
                kept = kept ||
                       (name != "settings.json" && files::state(file.parent_path() / name).number == inode);
                EXPECT_TRUE(killed || !name.starts_with(".corvane-")) << name;
            }
            EXPECT_TRUE(untouched || (kept && fileBytes(file) == fresh));
            if (!killed) {
                EXPECT_EQ(failed, untouched);
            }
            return reached;
        };
        for (const int error : {EIO, ENOSPC, EACCES, EPERM, EXDEV, EMFILE}) {
            for (int call = 1; keepsTheOldFile({call, faults::Action::fail, error}, false); ++call) {
                ASSERT_FALSE(testing::Test::HasFailure()) << "errno " << error << " at call " << call;
            }
        }
        for (const faults::Action action : {faults::Action::killBefore, faults::Action::killAfter}) {
            int call = 1;
            for (; keepsTheOldFile({call, action}, true); ++call) {
                ASSERT_FALSE(testing::Test::HasFailure()) << "killed at call " << call;
            }
            EXPECT_GT(call, 20);
        }
    });
}

} // namespace
} // namespace corvane
