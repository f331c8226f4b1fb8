#include "Agents/CodexConfigEditor.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
namespace faults = test::faults;
using files::FileError;
using test::fileBytes;
using test::writeFile;

/// The agent changes its file whenever the connector is about to make its final check.
class AgentConnectorChanges : public testing::Test {
  protected:
    /// Connects while the file gets new content up to `times` times; returns the error code, 0 for none.
    int connectWhileChanging(int times, const std::function<void(int)>& change) {
        return whileChanging(times, change,
                             [this] { backup = connector.connect(AgentKind::codex, test::noon); });
    }

    int whileChanging(int times, const std::function<void(int)>& change,
                      const std::function<void()>& operation) {
        int done = 0;
        flushes = 0;
        faults::arm({0, faults::Action::fail, 0, [&](std::string_view function, int descriptor) {
                         if (function == "fsync") ++flushes;
                         if (function != "fsync" || done == times) return;
                         const fs::path name =
                             fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
                         if (name.parent_path() == file.parent_path() &&
                             name.filename().string().starts_with(".corvane-")) {
                             change(++done);
                         }
                     }});
        int error = 0;
        try {
            operation();
        } catch (const FileError& thrown) {
            error = thrown.code().value();
        }
        faults::disarm();
        changes = done;
        for (const std::string& name : test::namesIn(file.parent_path())) {
            EXPECT_FALSE(name.starts_with(".corvane-")) << name;
        }
        return error;
    }

    [[nodiscard]] std::string installed(std::string_view text) const {
        return CodexConfigEditor::install(text, connector.paths().hookScript().string());
    }

    test::ScratchHome home;
    AgentConnector connector{home.path()};
    fs::path file = connector.configFile(AgentKind::codex);
    std::optional<fs::path> backup;
    int changes = 0;
    int flushes = 0;
};

TEST_F(AgentConnectorChanges, newContentIsUsedAndBackedUp) {
    for (const bool replaced : {false, true}) {
        writeFile(file, "n = 0\n");
        const int error = connectWhileChanging(1, [&](int /*n*/) {
            if (replaced) fs::remove(file);
            writeFile(file, "mine = \"new\"\n");
        });
        EXPECT_EQ(error, 0);
        EXPECT_EQ(fileBytes(file), installed("mine = \"new\"\n"));
        ASSERT_TRUE(backup);
        EXPECT_EQ(fileBytes(*backup), "mine = \"new\"\n");
    }
}

TEST_F(AgentConnectorChanges, equalBytesInAnotherFileAreDetectedToo) {
    writeFile(file, "n = 0\n");
    const files::FileState before = files::state(file);
    const int error = connectWhileChanging(1, [&](int /*n*/) {
        writeFile(file.parent_path() / "other", "n = 0\n");
        test::setModificationDate(file.parent_path() / "other", before.modified);
        fs::rename(file.parent_path() / "other", file);
    });
    EXPECT_EQ(error, 0);
    EXPECT_EQ(fileBytes(file), installed("n = 0\n"));
    ASSERT_TRUE(backup);
    EXPECT_GE(flushes, 4) << "it started over: two backups and two new files";
    EXPECT_EQ(test::backupsIn(file.parent_path()).size(), 1U);
    EXPECT_EQ(fileBytes(*backup), "n = 0\n");
}

TEST_F(AgentConnectorChanges, startsOverThreeTimes) {
    writeFile(file, "n = 0\n");
    EXPECT_EQ(connectWhileChanging(
                  3,
                  [&](int n) {
                      writeFile(file, "n = " + std::string(static_cast<std::size_t>(1 + n), '1') + "\n");
                  }),
              0);
    EXPECT_EQ(fileBytes(file), installed("n = 1111\n"));
    EXPECT_EQ(changes, 3);
    ASSERT_TRUE(backup);
    EXPECT_EQ(fileBytes(*backup), "n = 1111\n");
    EXPECT_EQ(test::backupsIn(file.parent_path()).size(), 1U) << "of what it replaced, and of nothing else";
}

TEST_F(AgentConnectorChanges, afterThreeRetriesTheAgentsContentStaysAndAnErrorIsRaised) {
    writeFile(file, "n = 0\n");
    EXPECT_EQ(connectWhileChanging(
                  100,
                  [&](int n) {
                      writeFile(file, "n = " + std::string(static_cast<std::size_t>(1 + n), '1') + "\n");
                  }),
              EBUSY);
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(fileBytes(file), "n = 11111\n");
    EXPECT_TRUE(test::backupsIn(file.parent_path()).empty()) << "nothing was replaced";
}

TEST_F(AgentConnectorChanges, removingStartsOverThreeTimesToo) {
    for (const int times : {3, 100}) {
        std::string last;
        writeFile(file, installed("n = 0\n"));
        const int error = whileChanging(
            times,
            [&](int n) {
                last = "n = " + std::string(static_cast<std::size_t>(1 + n), '1') + "\n";
                writeFile(file, installed(last));
            },
            [this] { connector.disconnect(AgentKind::codex); });
        EXPECT_EQ(error, times == 3 ? 0 : EBUSY);
        EXPECT_EQ(changes, times == 3 ? 3 : 4);
        EXPECT_EQ(fileBytes(file), times == 3 ? last : installed(last));
    }
}

TEST_F(AgentConnectorChanges, aFileThatAppearsIsUsed) {
    EXPECT_EQ(connectWhileChanging(1, [&](int /*n*/) { writeFile(file, "agent = 1\n"); }), 0);
    EXPECT_EQ(fileBytes(file), installed("agent = 1\n"));
    ASSERT_TRUE(backup);
    EXPECT_EQ(fileBytes(*backup), "agent = 1\n");
}

TEST_F(AgentConnectorChanges, aFileThatDisappearsIsCreatedAgain) {
    writeFile(file, "n = 0\n");
    EXPECT_EQ(connectWhileChanging(1, [&](int /*n*/) { fs::remove(file); }), 0);
    EXPECT_EQ(fileBytes(file), installed(""));
    EXPECT_EQ(backup, std::nullopt);
}

TEST_F(AgentConnectorChanges, aForeignNotifyLineThatAppearsStopsTheConnect) {
    writeFile(file, "n = 0\n");
    EXPECT_THROW(connectWhileChanging(1, [&](int /*n*/) { writeFile(file, "notify = [\"x\"]\n"); }),
                 std::exception);
    faults::disarm();
    EXPECT_EQ(fileBytes(file), "notify = [\"x\"]\n");
}

TEST_F(AgentConnectorChanges, aStaleTemporaryFileIsNotTouched) {
    writeFile(file, "n = 0\n");
    std::string last;
    faults::arm({0, faults::Action::fail, 0, [&](std::string_view function, int descriptor) {
                     if (function != "fsync") return;
                     const fs::path name = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
                     if (name.extension() == ".tmp") last = name.stem().string();
                 }});
    static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    faults::disarm();
    const std::size_t number = last.rfind('-') + 1;
    ASSERT_GT(number, 1U) << last;
    // The first one from here is the backup's.
    const std::string next =
        last.substr(0, number) + std::to_string(std::stoi(last.substr(number)) + 2) + ".tmp";
    writeFile(file.parent_path() / next, "left by a process of that number");
    writeFile(file, "n = 1\n");
    static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    EXPECT_EQ(fileBytes(file), installed("n = 1\n"));
    EXPECT_EQ(fileBytes(file.parent_path() / next), "left by a process of that number");
}

TEST_F(AgentConnectorChanges, otherErrorsOfATemporaryFileAreReportedUnchanged) {
    writeFile(file, "n = 0\n");
    faults::arm(
        {1, faults::Action::keepFailing, ENOSPC, {}, [](std::string_view function, std::string_view path) {
             return function == "open" && path.find("/.corvane-") != std::string_view::npos;
         }});
    int error = 0;
    try {
        static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    } catch (const FileError& thrown) {
        error = thrown.code().value();
    }
    EXPECT_EQ(faults::disarm(), 1);
    EXPECT_EQ(error, ENOSPC);
    EXPECT_EQ(fileBytes(file), "n = 0\n");
}

TEST_F(AgentConnectorChanges, bytesAreFlushedAndVerifiedBeforeTheyReplaceTheFile) {
    writeFile(file, "n = 0\n");
    std::vector<std::string> calls;
    faults::arm({0, faults::Action::fail, 0,
                 [&](std::string_view function, int /*descriptor*/) { calls.emplace_back(function); }});
    static_cast<void>(connector.connect(AgentKind::codex, test::noon));
    faults::disarm();
    const auto rename = std::find(calls.rbegin(), calls.rend(), "rename").base();
    ASSERT_GE(rename - calls.begin(), 5);
    EXPECT_EQ(std::vector<std::string>(rename - 5, rename),
              (std::vector<std::string>{"write", "fsync", "close", "stat", "rename"}));
    EXPECT_EQ(std::vector<std::string>(rename, calls.end()),
              (std::vector<std::string>{"open", "fsync", "close"}))
        << "then the folder is flushed";
}

TEST_F(AgentConnectorChanges, temporaryFilesAndBackupsAreNeverMoreReadableThanTheOriginal) {
    const test::CreationMask mask(0);
    for (const mode_t mode : {0600U, 0640U, 0644U}) {
        writeFile(file, "secret = 1\n");
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        int seen = 0;
        faults::arm({0, faults::Action::fail, 0, [&](std::string_view /*function*/, int /*descriptor*/) {
                         for (const std::string& name : test::namesIn(file.parent_path())) {
                             if (name == "config.toml") continue;
                             EXPECT_EQ(test::modeOf(file.parent_path() / name) & ~mode, 0U) << name;
                             ++seen;
                         }
                     }});
        static_cast<void>(connector.connect(AgentKind::codex, test::noon));
        faults::disarm();
        EXPECT_GT(seen, 10);
        fs::remove_all(file.parent_path());
    }
}

} // namespace
} // namespace corvane
