#include "Agents/HookScript.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::backupsIn;
using test::fileBytes;
using test::writeFile;

class AgentConnectorRepairTest : public testing::Test {
  protected:
    test::ScratchHome home;
    AgentConnector connector{home.path()};
    fs::path claudeFile = connector.configFile(AgentKind::claude);
};

TEST_F(AgentConnectorRepairTest, connectWritesNothingIntoAFileThatTheAgentHasReformatted) {
    static_cast<void>(connector.connect(AgentKind::claude, test::noon));
    std::string compact = fileBytes(claudeFile).value();
    std::erase(compact, '\n');
    writeFile(claudeFile, compact);
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), std::nullopt);
    EXPECT_EQ(fileBytes(claudeFile), compact);
    EXPECT_TRUE(backupsIn(claudeFile.parent_path()).empty());
}

TEST_F(AgentConnectorRepairTest, repairingRewritesTheHookOnlyIfItDoesNotWork) {
    const fs::path hook = connector.paths().hookScript();
    const auto repaired = [&] {
        connector.repairHook();
        return HookScript::isInstalled(connector.paths());
    };
    EXPECT_FALSE(HookScript::isInstalled(connector.paths()));
    EXPECT_TRUE(repaired());
    const files::FileState before = files::state(hook);
    EXPECT_TRUE(repaired());
    EXPECT_EQ(files::state(hook), before);

    writeFile(hook, "#!/bin/sh\nexit 0");
    EXPECT_FALSE(HookScript::isInstalled(connector.paths()));
    EXPECT_TRUE(repaired());
    EXPECT_EQ(fileBytes(hook), HookScript::contents);

    fs::permissions(hook, fs::perms::owner_read);
    EXPECT_FALSE(HookScript::isInstalled(connector.paths()));
    EXPECT_TRUE(repaired());

    fs::remove_all(connector.paths().support);
    EXPECT_TRUE(repaired());
    fs::remove(hook);
    fs::create_directory(hook);
    EXPECT_THROW(connector.repairHook(), files::FileError);
}

} // namespace
} // namespace corvane
