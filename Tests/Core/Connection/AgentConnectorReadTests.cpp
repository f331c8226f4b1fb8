#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/HookScript.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
namespace faults = test::faults;
using files::FileError;
using test::fileBytes;
using test::writeFile;

/// The agent's file cannot be opened, for one reason or another.
class AgentConnectorReads : public testing::TestWithParam<AgentKind> {
  protected:
    /// The code of the error that `operation` throws while opening the agent's file fails with `error`; 0 for
    /// none.
    int codeWhileOpeningFails(int error, const std::function<void()>& operation) {
        faults::arm({1,
                     faults::Action::keepFailing,
                     error,
                     {},
                     [&](std::string_view function, std::string_view path) {
                         return function == "open" && path == file.string();
                     }});
        int code = 0;
        try {
            operation();
        } catch (const FileError& thrown) {
            code = thrown.code().value();
        }
        EXPECT_GE(faults::disarm(), 1) << "the file was never opened";
        return code;
    }

    [[nodiscard]] std::string installed(std::optional<std::string_view> text) const {
        return kind == AgentKind::claude
                   ? ClaudeSettingsEditor::install(text, HookScript::command(kind, connector.paths()))
                   : CodexConfigEditor::install(text, connector.paths().hookScript().string());
    }

    AgentKind kind = GetParam();
    test::ScratchHome home;
    AgentConnector connector{home.path()};
    fs::path file = connector.configFile(kind);
    std::string old = kind == AgentKind::claude ? "{\n  \"model\": \"opus\"\n}\n" : "model = \"o3\"\n";
};

TEST_P(AgentConnectorReads, aShortageDoesNotMakeTheFileMissingAndIsAnError) {
    for (const int error : {EMFILE, ENFILE, ENOMEM, EBUSY}) {
        for (const std::string& bytes : {old, installed(old)}) {
            writeFile(file, bytes);
            const files::FileState before = files::state(file);
            EXPECT_EQ(
                codeWhileOpeningFails(error, [&] { static_cast<void>(connector.connect(kind, test::noon)); }),
                error);
            EXPECT_EQ(codeWhileOpeningFails(error, [&] { connector.disconnect(kind); }), error);
            EXPECT_EQ(codeWhileOpeningFails(error, [&] { EXPECT_FALSE(connector.isConnected(kind)); }), 0);
            EXPECT_EQ(files::state(file), before) << error;
            EXPECT_EQ(test::namesIn(file.parent_path()).size(), 1U) << error;
        }
    }
}

TEST_P(AgentConnectorReads, anyOtherFailureMakesTheFileCountAsMissing) {
    for (const int error : {EACCES, EIO, EPERM}) {
        writeFile(file, old);
        EXPECT_EQ(codeWhileOpeningFails(error, [&] { connector.disconnect(kind); }), 0);
        EXPECT_EQ(fileBytes(file), old);
        EXPECT_EQ(codeWhileOpeningFails(
                      error, [&] { EXPECT_EQ(connector.connect(kind, test::noon), std::nullopt); }),
                  0);
        EXPECT_EQ(fileBytes(file), installed(std::nullopt)) << error;
        const std::vector<std::string> backups = test::backupsIn(file.parent_path());
        ASSERT_EQ(backups.size(), 1U) << error;
        EXPECT_EQ(fileBytes(file.parent_path() / backups.front()), old) << error;
        fs::remove_all(file.parent_path());
    }
}

// NOLINTNEXTLINE(cert-err58-cpp)
INSTANTIATE_TEST_SUITE_P(Agents, AgentConnectorReads, testing::Values(AgentKind::claude, AgentKind::codex),
                         [](const auto& each) { return std::string(each.param.rawValue()); });

} // namespace
} // namespace corvane
