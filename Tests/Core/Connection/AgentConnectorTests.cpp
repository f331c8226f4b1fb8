#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"
#include "Agents/HookScript.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using files::FileError;
using test::backupsIn;
using test::fileBytes;
using test::modeOf;
using test::namesIn;
using test::ScratchHome;
using test::writeFile;

class AgentConnectorTest : public testing::Test {
  protected:
    void TearDown() override {
        for (const fs::path& folder : {claudeFile.parent_path(), codexFile.parent_path()}) {
            for (const std::string& name : namesIn(folder)) {
                EXPECT_FALSE(name.starts_with(".corvane-")) << "a temporary file was left: " << name;
            }
        }
    }

    /// The code of the file error that connecting throws.
    int connectErrorCode(AgentKind kind) {
        try {
            static_cast<void>(connector.connect(kind, test::noon));
        } catch (const FileError& error) {
            EXPECT_FALSE(error.description().empty());
            return error.code().value();
        }
        return 0;
    }

    ScratchHome home;
    AgentConnector connector{home.path()};
    fs::path claudeFile = home / ".claude/settings.json";
    fs::path codexFile = home / ".codex/config.toml";
    std::string command = HookScript::command(AgentKind::claude, connector.paths());
    std::string hookPath = connector.paths().hookScript().string();
    std::string freshClaude = ClaudeSettingsEditor::install(std::nullopt, command);
    std::string freshCodex = CodexConfigEditor::install(std::nullopt, hookPath);
};

TEST_F(AgentConnectorTest, knowsTheAgentsFilesAndItsOwnPaths) {
    EXPECT_EQ(connector.home(), home.path());
    EXPECT_EQ(connector.paths(), CorvanePaths::standard(home.path()));
    EXPECT_EQ(connector.configFile(AgentKind::claude), claudeFile);
    EXPECT_EQ(connector.configFile(AgentKind::codex), codexFile);
    const CorvanePaths other{home / "elsewhere/Corvane"};
    EXPECT_EQ(AgentConnector(home.path(), other).paths(), other);
}

TEST_F(AgentConnectorTest, firstConnectCreatesFolderFileAndHookWithoutABackup) {
    EXPECT_FALSE(connector.isConnected(AgentKind::claude));
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), std::nullopt);
    EXPECT_EQ(fileBytes(claudeFile), freshClaude);
    EXPECT_EQ(namesIn(claudeFile.parent_path()), std::vector<std::string>{"settings.json"});
    EXPECT_EQ(fileBytes(connector.paths().hookScript()), HookScript::contents);
    EXPECT_TRUE(connector.isConnected(AgentKind::claude));
    EXPECT_FALSE(connector.isConnected(AgentKind::codex));

    EXPECT_EQ(connector.connect(AgentKind::codex, test::noon), std::nullopt);
    EXPECT_EQ(fileBytes(codexFile), freshCodex);
    EXPECT_EQ(namesIn(codexFile.parent_path()), std::vector<std::string>{"config.toml"});
    EXPECT_TRUE(connector.isConnected(AgentKind::codex));
}

TEST_F(AgentConnectorTest, theFilesCallTheHookOfTheGivenSupportFolder) {
    const AgentConnector other(home.path(), CorvanePaths{home / "else where/Corvane"});
    static_cast<void>(other.connect(AgentKind::claude, test::noon));
    static_cast<void>(other.connect(AgentKind::codex, test::noon));
    const std::string path = (home / "else where/Corvane/bin/corvane-hook").string();
    EXPECT_THAT(fileBytes(claudeFile).value(), testing::HasSubstr("\"\\\"" + path + "\\\" claude\""));
    EXPECT_THAT(fileBytes(codexFile).value(), testing::HasSubstr("notify = [\"" + path + "\", \"codex\"]"));
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(AgentConnectorTest, changingAFileBacksItUpUnderTheLocalTime) {
    writeFile(claudeFile, R"({"model":"opus"})");
    writeFile(codexFile, "model = \"o3\"\n");
    const auto backup = connector.connect(AgentKind::claude, test::noon);
    ASSERT_EQ(backup, claudeFile.string() + ".corvane-backup-20250302-140307");
    EXPECT_EQ(fileBytes(*backup), R"({"model":"opus"})");
    EXPECT_EQ(fileBytes(claudeFile), ClaudeSettingsEditor::install(R"({"model":"opus"})", command));

    const auto codexBackup = connector.connect(AgentKind::codex, test::noon);
    ASSERT_EQ(codexBackup, codexFile.string() + ".corvane-backup-20250302-140307");
    EXPECT_EQ(fileBytes(*codexBackup), "model = \"o3\"\n");
    EXPECT_EQ(fileBytes(codexFile), freshCodex + "\nmodel = \"o3\"\n");
}

TEST_F(AgentConnectorTest, theBackupsTimeFollowsTheTimeZone) {
    const test::TimeZone zone("XXX-05:30");
    writeFile(claudeFile, "{}");
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon),
              claudeFile.string() + ".corvane-backup-20250302-193307");
}

TEST_F(AgentConnectorTest, connectingTwiceWritesNothingTheSecondTime) {
    writeFile(claudeFile, "{}");
    ASSERT_TRUE(connector.connect(AgentKind::claude, test::noon));
    const files::FileState before = files::state(claudeFile);
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), std::nullopt);
    EXPECT_EQ(files::state(claudeFile), before);
    EXPECT_EQ(backupsIn(claudeFile.parent_path()).size(), 1U);

    static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    const files::FileState codexBefore = files::state(codexFile);
    EXPECT_EQ(connector.connect(AgentKind::codex, test::noon), std::nullopt);
    EXPECT_EQ(files::state(codexFile), codexBefore);
}

TEST_F(AgentConnectorTest, backupsOfOneSecondAreNumbered) {
    const std::string name = claudeFile.string() + ".corvane-backup-20250302-140307";
    for (const std::string suffix : {"", "-2", "-3", "-4"}) {
        writeFile(claudeFile, R"({"n":")" + suffix + R"("})");
        EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), name + suffix);
        EXPECT_EQ(fileBytes(name + suffix), R"({"n":")" + suffix + R"("})");
    }
    fs::create_symlink("nowhere", name + "-5");
    writeFile(claudeFile, "{}");
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), name + "-6")
        << "a dangling link takes a name too";
}

TEST_F(AgentConnectorTest, tenThousandConnectsOnAChangingFileLeakNoDescriptor) {
    // fsync takes milliseconds on some disks.
    const test::ScratchFolder folder = test::inMemory();
    const AgentConnector repeated(folder.path());
    const fs::path file = repeated.configFile(AgentKind::codex);
    const std::size_t open = test::openDescriptors();
    constexpr int perSecond = 500;
    for (int i = 0; i < 10'000; ++i) {
        writeFile(file, "n = " + std::to_string(i) + "\n");
        const auto backup = repeated.connect(AgentKind::codex, test::noon + Seconds(i / perSecond));
        ASSERT_TRUE(backup);
        const int number = i % perSecond + 1;
        const std::string suffix = number == 1 ? std::string() : "-" + std::to_string(number);
        ASSERT_TRUE(backup->string().ends_with(suffix)) << *backup;
        ASSERT_EQ(fileBytes(*backup), "n = " + std::to_string(i) + "\n");
    }
    EXPECT_EQ(test::openDescriptors(), open);
    EXPECT_EQ(backupsIn(file.parent_path()).size(), 10'000U);
    EXPECT_EQ(namesIn(file.parent_path()).size(), 10'001U);
}

TEST_F(AgentConnectorTest, refusedContentChangesNothing) {
    writeFile(claudeFile, "{ // note\n}");
    writeFile(codexFile, "a = \"\xFF\"\n");
    const auto expectRefusal = [&](AgentKind kind, const ConfigEditError& expected, bool alsoDisconnect) {
        const fs::path file = connector.configFile(kind);
        const files::FileState before = files::state(file);
        try {
            static_cast<void>(connector.connect(kind, test::noon));
            ADD_FAILURE() << "connected";
        } catch (const ConfigEditError& error) {
            EXPECT_EQ(error, expected);
        }
        if (alsoDisconnect) {
            try {
                connector.disconnect(kind);
                ADD_FAILURE() << "disconnected";
            } catch (const ConfigEditError& error) {
                EXPECT_EQ(error, expected);
            }
        }
        EXPECT_FALSE(connector.isConnected(kind));
        EXPECT_EQ(files::state(file), before);
        EXPECT_EQ(namesIn(file.parent_path()).size(), 1U);
    };
    expectRefusal(AgentKind::claude, ConfigEditError::unreadable("settings.json is not valid JSON"), true);
    expectRefusal(AgentKind::codex, ConfigEditError::unreadable("config.toml is not UTF-8 text"), true);
    writeFile(codexFile, " notify = [\"x\"]\n");
    expectRefusal(AgentKind::codex, ConfigEditError::codexNotifyTaken("notify = [\"x\"]"), false);
    connector.disconnect(AgentKind::codex);
    EXPECT_EQ(fileBytes(codexFile), " notify = [\"x\"]\n");
}

TEST_F(AgentConnectorTest, aHookThatCannotBeInstalledStopsBeforeTheAgentsFileIsRead) {
    writeFile(home / "Library/Application Support/Corvane", "a file in the folder's place");
    writeFile(claudeFile, "not JSON");
    EXPECT_THROW(static_cast<void>(connector.connect(AgentKind::claude, test::noon)), FileError);
    EXPECT_EQ(fileBytes(claudeFile), "not JSON");
}

TEST_F(AgentConnectorTest, aHookPathThatTheAgentsFileCannotHoldIsRefused) {
    const AgentConnector control(home.path(), CorvanePaths{home / "a\nb/Corvane"});
    EXPECT_THROW(static_cast<void>(control.connect(AgentKind::codex, test::noon)), FileError);
    const AgentConnector bytes(home.path(), CorvanePaths{home / "a\xFF/Corvane"});
    EXPECT_THROW(static_cast<void>(bytes.connect(AgentKind::claude, test::noon)), FileError);
    EXPECT_FALSE(fs::exists(codexFile.parent_path()));
    EXPECT_FALSE(fs::exists(claudeFile.parent_path()));
}

TEST_F(AgentConnectorTest, disconnectRemovesOnlyOwnEntriesAndMakesNoBackup) {
    const std::string claude = ClaudeSettingsEditor::uninstall(ClaudeSettingsEditor::install(
        R"({"model":"opus","hooks":{"Stop":[{"hooks":[{"command":"say"}]}]}})", command));
    writeFile(claudeFile, claude);
    writeFile(codexFile, "a = 1\n");
    for (const AgentKind kind : AgentKind::allCases) {
        static_cast<void>(connector.connect(kind, test::noon));
        ASSERT_TRUE(connector.isConnected(kind));
        connector.disconnect(kind);
        EXPECT_FALSE(connector.isConnected(kind));
        EXPECT_EQ(backupsIn(connector.configFile(kind).parent_path()).size(), 1U)
            << "the one that connect made";
    }
    EXPECT_EQ(fileBytes(claudeFile), claude);
    EXPECT_EQ(fileBytes(codexFile), "a = 1\n");
    EXPECT_TRUE(fs::exists(connector.paths().hookScript()));
}

TEST_F(AgentConnectorTest, disconnectOfAMissingFileCreatesNothing) {
    for (const AgentKind kind : AgentKind::allCases)
        connector.disconnect(kind);
    EXPECT_TRUE(namesIn(home.path()).empty());
}

TEST_F(AgentConnectorTest, disconnectWritesNothingIfNoEntryIsItsOwn) {
    for (const auto& [claude, codex] :
         {std::pair("{ \"a\" : 1}", "a = 1\n"),
          std::pair(R"({"z":1, "hooks":{"Stop":[{"hooks":[{"command":"say done"}]}],"X":[]},"a":2})",
                    "\n\n# mine\nnotify = [\"other\"]\n")}) {
        writeFile(claudeFile, claude);
        writeFile(codexFile, codex);
        for (const AgentKind kind : AgentKind::allCases) {
            const files::FileState before = files::state(connector.configFile(kind));
            connector.disconnect(kind);
            EXPECT_EQ(files::state(connector.configFile(kind)), before);
        }
    }
}

TEST_F(AgentConnectorTest, disconnectLeavesAnEmptyFileThatConnectHadCreated) {
    static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    connector.disconnect(AgentKind::codex);
    EXPECT_EQ(fileBytes(codexFile), "");
}

TEST_F(AgentConnectorTest, fourOfFiveEventsAreNotConnected) {
    std::string document = freshClaude;
    document.replace(document.find("SessionEnd"), 10, "SessionOld");
    writeFile(claudeFile, document);
    EXPECT_FALSE(connector.isConnected(AgentKind::claude));
    ASSERT_TRUE(connector.connect(AgentKind::claude, test::noon));
    EXPECT_TRUE(connector.isConnected(AgentKind::claude)) << "connecting repairs it";
}

TEST_F(AgentConnectorTest, ownEntriesAmongBytesThatAreNotUtf8AreNotConnected) {
    writeFile(codexFile, freshCodex + "a = \"\xFF\"\n");
    EXPECT_FALSE(connector.isConnected(AgentKind::codex));
    writeFile(claudeFile, freshClaude.substr(0, freshClaude.rfind('}')) + ",\"a\":\"\xFF\"}");
    EXPECT_FALSE(connector.isConnected(AgentKind::claude));
}

TEST_F(AgentConnectorTest, theFilesPermissionsAreKept) {
    const test::CreationMask mask(022);
    for (const mode_t mode : std::initializer_list<mode_t>{0600, 0644, 0664, 0400, 0666, 0755}) {
        writeFile(codexFile, "a = 1\n");
        ASSERT_EQ(chmod(codexFile.c_str(), mode), 0);
        const auto backup = connector.connect(AgentKind::codex, test::noon);
        ASSERT_TRUE(backup);
        EXPECT_EQ(modeOf(codexFile), mode);
        EXPECT_EQ(modeOf(*backup), mode);
        connector.disconnect(AgentKind::codex);
        EXPECT_EQ(modeOf(codexFile), mode);
        fs::remove(codexFile);
    }
}

TEST_F(AgentConnectorTest, aNewFileFollowsTheCreationMask) {
    for (const auto& [mask, expected] :
         {std::pair{022U, 0644U}, {077U, 0600U}, {002U, 0664U}, {027U, 0640U}}) {
        const test::CreationMask set(static_cast<mode_t>(mask));
        static_cast<void>(connector.connect(AgentKind::codex, test::noon));
        EXPECT_EQ(modeOf(codexFile), expected);
        EXPECT_EQ(modeOf(codexFile.parent_path()), 0777U & ~mask);
        fs::remove_all(codexFile.parent_path());
    }
}

TEST_F(AgentConnectorTest, aLinkStaysALinkAndTheBackupIsBesideTheLink) {
    writeFile(home / "dotfiles/claude.json", "{}");
    fs::create_directories(claudeFile.parent_path());
    fs::create_symlink("../dotfiles/claude.json", claudeFile);
    const auto backup = connector.connect(AgentKind::claude, test::noon);
    ASSERT_TRUE(backup);
    EXPECT_EQ(fs::read_symlink(claudeFile), "../dotfiles/claude.json");
    EXPECT_EQ(fileBytes(home / "dotfiles/claude.json"), freshClaude);
    EXPECT_EQ(backup->parent_path(), claudeFile.parent_path());
    EXPECT_FALSE(fs::is_symlink(*backup));
    EXPECT_EQ(namesIn(home / "dotfiles"), std::vector<std::string>{"claude.json"});
    EXPECT_TRUE(connector.isConnected(AgentKind::claude));
    connector.disconnect(AgentKind::claude);
    EXPECT_EQ(fs::read_symlink(claudeFile), "../dotfiles/claude.json");
    EXPECT_EQ(fileBytes(home / "dotfiles/claude.json"), "{}\n");
}

TEST_F(AgentConnectorTest, chainsOfRelativeAndAbsoluteLinksThroughLinkedFoldersStay) {
    writeFile(home / "real/deep/config", "a = 1\n");
    fs::create_directories(home / "links");
    fs::create_directory_symlink(home / "real", home / "links/real");
    fs::create_symlink("real/deep/../deep/config", home / "links/one");
    fs::create_symlink(home / "links/one", home / "links/two");
    fs::create_directories(home / "folder");
    fs::create_directory_symlink("folder", home / ".codex");
    fs::create_symlink("../links/two", codexFile);

    ASSERT_TRUE(connector.connect(AgentKind::codex, test::noon));
    EXPECT_EQ(fileBytes(home / "real/deep/config"), freshCodex + "\na = 1\n");
    EXPECT_TRUE(fs::is_symlink(home / ".codex"));
    EXPECT_EQ(fs::read_symlink(codexFile), "../links/two");
    EXPECT_EQ(fs::read_symlink(home / "links/two"), home / "links/one");
    EXPECT_EQ(fs::read_symlink(home / "links/one"), "real/deep/../deep/config");
    EXPECT_EQ(namesIn(home / "real/deep"), std::vector<std::string>{"config"});
}

TEST_F(AgentConnectorTest, aDanglingLinkGetsItsTargetCreated) {
    fs::create_directories(claudeFile.parent_path());
    fs::create_symlink("../dotfiles/new/claude.json", claudeFile);
    EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(claudeFile));
    EXPECT_EQ(fileBytes(home / "dotfiles/new/claude.json"), freshClaude);
}

TEST_F(AgentConnectorTest, aLoopOfLinksIsAnErrorThatChangesNothing) {
    fs::create_directories(claudeFile.parent_path());
    fs::create_symlink("other", claudeFile);
    fs::create_symlink("settings.json", claudeFile.parent_path() / "other");
    EXPECT_EQ(connectErrorCode(AgentKind::claude), ELOOP);
    EXPECT_FALSE(connector.isConnected(AgentKind::claude));
    connector.disconnect(AgentKind::claude);
    EXPECT_EQ(namesIn(claudeFile.parent_path()), (std::vector<std::string>{"other", "settings.json"}));
}

TEST_F(AgentConnectorTest, aFolderInTheFilesPlaceIsAnErrorThatChangesNothing) {
    writeFile(claudeFile / "inside", "kept");
    EXPECT_EQ(connectErrorCode(AgentKind::claude), EISDIR);
    EXPECT_FALSE(connector.isConnected(AgentKind::claude));
    connector.disconnect(AgentKind::claude);
    EXPECT_EQ(namesIn(claudeFile.parent_path()), std::vector<std::string>{"settings.json"});
    EXPECT_EQ(fileBytes(claudeFile / "inside"), "kept");
}

TEST_F(AgentConnectorTest, aFileInTheFoldersPlaceIsAnErrorThatChangesNothing) {
    writeFile(home / ".claude", "a file");
    EXPECT_EQ(connectErrorCode(AgentKind::claude), ENOTDIR);
    EXPECT_EQ(fileBytes(home / ".claude"), "a file");
    connector.disconnect(AgentKind::claude);
}

TEST_F(AgentConnectorTest, aPipeOrADeviceNeverBlocksAndIsNeverReplaced) {
    fs::create_directories(codexFile.parent_path());
    ASSERT_EQ(mkfifo(codexFile.c_str(), 0600), 0);
    EXPECT_EQ(connectErrorCode(AgentKind::codex), EINVAL);
    EXPECT_FALSE(connector.isConnected(AgentKind::codex));
    connector.disconnect(AgentKind::codex);
    EXPECT_TRUE(fs::is_fifo(codexFile));

    fs::create_directories(claudeFile.parent_path());
    fs::create_symlink("/dev/null", claudeFile);
    EXPECT_EQ(connectErrorCode(AgentKind::claude), EINVAL);
    connector.disconnect(AgentKind::claude);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(AgentConnectorTest, anUnreadableFileIsKeptUnderABackupNameForAnOrdinaryUser) {
    writeFile(claudeFile, R"({"secret":1})");
    const auto inode = files::state(claudeFile).number;
    ASSERT_EQ(chmod(claudeFile.c_str(), 0), 0);
    test::asOrdinaryUser(home.root(), [&] {
        EXPECT_FALSE(connector.isConnected(AgentKind::claude));
        connector.disconnect(AgentKind::claude);
        EXPECT_EQ(files::state(claudeFile).number, inode) << "removing leaves an unreadable file alone";
        EXPECT_EQ(connector.connect(AgentKind::claude, test::noon), std::nullopt);
        EXPECT_TRUE(connector.isConnected(AgentKind::claude));
    });
    EXPECT_EQ(fileBytes(claudeFile), freshClaude);
    const fs::path kept = claudeFile.string() + ".corvane-backup-20250302-140307";
    EXPECT_EQ(files::state(kept).number, inode);
    EXPECT_EQ(modeOf(kept), 0U);
    ASSERT_EQ(chmod(kept.c_str(), 0600), 0);
    EXPECT_EQ(fileBytes(kept), R"({"secret":1})");
    EXPECT_EQ(namesIn(claudeFile.parent_path()).size(), 2U);
}

TEST_F(AgentConnectorTest, theTargetOfALinkThatCannotBeReadIsKeptBesideTheLink) {
    writeFile(home / "dotfiles/config", "secret = 1\n");
    fs::create_directories(codexFile.parent_path());
    fs::create_symlink("../dotfiles/config", codexFile);
    ASSERT_EQ(chmod((home / "dotfiles/config").c_str(), 0), 0);
    test::asOrdinaryUser(home.root(),
                         [&] { EXPECT_EQ(connector.connect(AgentKind::codex, test::noon), std::nullopt); });
    EXPECT_TRUE(fs::is_symlink(codexFile));
    EXPECT_EQ(fileBytes(home / "dotfiles/config"), freshCodex);
    const fs::path kept = codexFile.string() + ".corvane-backup-20250302-140307";
    EXPECT_FALSE(fs::is_symlink(kept));
    ASSERT_EQ(chmod(kept.c_str(), 0600), 0);
    EXPECT_EQ(fileBytes(kept), "secret = 1\n");
}

TEST_F(AgentConnectorTest, anUnreadableFileThatCannotBeKeptFailsAndNothingChanges) {
    writeFile(claudeFile, "{}");
    ASSERT_EQ(chmod(claudeFile.c_str(), 0), 0);
    // Nobody may create a name in this folder, not even for the hard link.
    ASSERT_EQ(chmod(claudeFile.parent_path().c_str(), 0500), 0);
    const files::FileState before = files::state(claudeFile);
    test::asOrdinaryUser(home.root(), [&] {
        EXPECT_EQ(connectErrorCode(AgentKind::claude), EACCES);
        EXPECT_EQ(files::state(claudeFile), before);
    });
    EXPECT_EQ(namesIn(claudeFile.parent_path()), std::vector<std::string>{"settings.json"});
}

TEST_F(AgentConnectorTest, anotherUsersUnreadableFileIsLeftAlone) {
    if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make another user's file";
    writeFile(claudeFile, R"({"secret":1})");
    test::asOrdinaryUser(
        home.root(),
        [&] {
            try {
                static_cast<void>(connector.connect(AgentKind::claude, test::noon));
                // Systems that let users link to files of others keep it by a hard link.
                EXPECT_EQ(backupsIn(claudeFile.parent_path()).size(), 1U);
            } catch (const FileError& error) {
                EXPECT_EQ(error.code().value(), EPERM);
                EXPECT_EQ(namesIn(claudeFile.parent_path()), std::vector<std::string>{"settings.json"});
            }
        },
        [&] {
            ASSERT_EQ(chown(claudeFile.c_str(), 0, 0), 0);
            ASSERT_EQ(chmod(claudeFile.c_str(), 0600), 0);
        });
}

TEST_F(AgentConnectorTest, aFolderWithoutWritePermissionIsAnErrorThatChangesNothing) {
    writeFile(claudeFile, "{}");
    writeFile(codexFile, freshCodex);
    ASSERT_EQ(chmod(claudeFile.parent_path().c_str(), 0500), 0);
    ASSERT_EQ(chmod(codexFile.parent_path().c_str(), 0500), 0);
    test::asOrdinaryUser(home.root(), [&] {
        EXPECT_EQ(connectErrorCode(AgentKind::claude), EACCES);
        EXPECT_THROW(connector.disconnect(AgentKind::codex), FileError);
    });
    EXPECT_EQ(fileBytes(claudeFile), "{}");
    EXPECT_EQ(fileBytes(codexFile), freshCodex);
    EXPECT_EQ(namesIn(claudeFile.parent_path()).size(), 1U);
    EXPECT_EQ(namesIn(codexFile.parent_path()).size(), 1U);
}

TEST_F(AgentConnectorTest, aFolderThatCannotBeEnteredIsAnErrorThatChangesNothing) {
    writeFile(claudeFile, freshClaude);
    ASSERT_EQ(chmod(claudeFile.parent_path().c_str(), 0), 0);
    test::asOrdinaryUser(home.root(), [&] {
        EXPECT_EQ(connectErrorCode(AgentKind::claude), EACCES);
        EXPECT_FALSE(connector.isConnected(AgentKind::claude));
        connector.disconnect(AgentKind::claude);
    });
    ASSERT_EQ(chmod(claudeFile.parent_path().c_str(), 0700), 0);
    EXPECT_EQ(fileBytes(claudeFile), freshClaude);
    EXPECT_EQ(namesIn(claudeFile.parent_path()).size(), 1U);
}

} // namespace
} // namespace corvane
