#include "Agents/CodexConfigEditor.h"
#include "Connection/AgentConnector.h"
#include "ConnectorTestSupport.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <linux/fs.h>
#include <optional>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using files::FileError;
using test::ChildResult;
using test::fileBytes;
using test::writeFile;

/// Moves this process into its own mount namespace. An ordinary user becomes root of a user namespace, where
/// the system permits that.
bool seesOwnMounts() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) != 0) return false;
    if (user != 0) {
        // Some systems permit the namespace but not to be root of it.
        const auto isWritten = [](const char* file, const std::string& text) {
            return static_cast<bool>(std::ofstream(file) << text << std::flush);
        };
        if (!isWritten("/proc/self/setgroups", "deny") ||
            !isWritten("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") ||
            !isWritten("/proc/self/gid_map", "0 " + std::to_string(group) + " 1"))
            return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Runs `body` in a child that has a memory file system of `size` mounted at `place`.
ChildResult withSmallDisk(const fs::path& place, const std::string& size, const std::function<void()>& body) {
    fs::create_directories(place);
    return test::inChild([&] {
        if (!seesOwnMounts() || mount("tmpfs", place.c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0) {
            return ChildResult::skipped;
        }
        body();
        return ChildResult::passed;
    });
}

/// The code of the file error that `operation` throws; 0 for none.
int errorCode(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const FileError& error) {
        return error.code().value();
    }
    return 0;
}

void expectNoTemporaryFile(const fs::path& folder) {
    for (const std::string& name : test::namesIn(folder))
        EXPECT_FALSE(name.starts_with(".corvane-")) << name;
}

constexpr const char* noMounts = "this system lets the test mount nothing";

TEST(AgentConnectorOnDisks, aFullDiskLeavesOldOrNewBytes) {
    const test::ScratchFolder scratch;
    const fs::path home = scratch / "disk";
    const ChildResult result = withSmallDisk(home, "24k", [&] {
        const AgentConnector connector(home, CorvanePaths{scratch / "Corvane"});
        const fs::path file = connector.configFile(AgentKind::codex);
        int full = 0;
        int connected = 0;
        for (std::size_t size = 100; size < 20'000; size += 500) {
            const std::string old = "x = \"" + std::string(size, 'a') + "\"\n";
            writeFile(file, old);
            const int error =
                errorCode([&] { static_cast<void>(connector.connect(AgentKind::codex, test::noon)); });
            if (error == 0) {
                EXPECT_EQ(fileBytes(file),
                          CodexConfigEditor::install(old, connector.paths().hookScript().string()));
                ++connected;
                // Removing makes no backup, but needs space for a second file.
                const std::string installed = fileBytes(file).value();
                const int second = errorCode([&] { connector.disconnect(AgentKind::codex); });
                EXPECT_TRUE(second == 0 || second == ENOSPC);
                EXPECT_EQ(fileBytes(file), second == 0 ? old : installed);
            } else {
                EXPECT_EQ(error, ENOSPC);
                EXPECT_EQ(fileBytes(file), old);
                ++full;
            }
            for (const std::string& name : test::backupsIn(file.parent_path())) {
                EXPECT_EQ(fileBytes(file.parent_path() / name), old) << "a backup is whole or not there";
            }
            expectNoTemporaryFile(file.parent_path());
            fs::remove_all(file.parent_path());
        }
        EXPECT_GT(full, 5);
        EXPECT_GT(connected, 5);
    });
    if (result == ChildResult::skipped) GTEST_SKIP() << noMounts;
    EXPECT_EQ(result, ChildResult::passed);
}

TEST(AgentConnectorOnDisks, aFirstConnectOnAFullDiskLeavesNoFile) {
    const test::ScratchFolder scratch;
    const fs::path home = scratch / "disk";
    const ChildResult result = withSmallDisk(home, "8k", [&] {
        writeFile(home / "filler", std::string(8'192, 'x'));
        const AgentConnector connector(home, CorvanePaths{scratch / "Corvane"});
        EXPECT_EQ(errorCode([&] { static_cast<void>(connector.connect(AgentKind::claude, test::noon)); }),
                  ENOSPC);
        EXPECT_TRUE(test::namesIn(home / ".claude").empty());
    });
    if (result == ChildResult::skipped) GTEST_SKIP() << noMounts;
    EXPECT_EQ(result, ChildResult::passed);
}

TEST(AgentConnectorOnDisks, aReadOnlyDiskIsAnErrorThatChangesNothing) {
    const test::ScratchFolder scratch;
    const fs::path home = scratch / "disk";
    const ChildResult result = withSmallDisk(home, "64k", [&] {
        const AgentConnector connector(home, CorvanePaths{scratch / "Corvane"});
        const fs::path file = connector.configFile(AgentKind::codex);
        writeFile(file, "a = 1\n");
        ASSERT_EQ(mount(nullptr, home.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_EQ(errorCode([&] { static_cast<void>(connector.connect(AgentKind::codex, test::noon)); }),
                  EROFS);
        EXPECT_EQ(errorCode([&] { static_cast<void>(connector.connect(AgentKind::claude, test::noon)); }),
                  EROFS);
        EXPECT_EQ(fileBytes(file), "a = 1\n");
        EXPECT_EQ(test::namesIn(home), std::vector<std::string>{".codex"});
        EXPECT_EQ(test::namesIn(file.parent_path()).size(), 1U);
    });
    if (result == ChildResult::skipped) GTEST_SKIP() << noMounts;
    EXPECT_EQ(result, ChildResult::passed);
}

TEST(AgentConnectorOnDisks, aLinkedFileOnAnotherDiskIsReplacedThere) {
    const test::ScratchFolder scratch;
    const fs::path disk = scratch / "disk";
    const ChildResult result = withSmallDisk(disk, "64k", [&] {
        const AgentConnector connector(scratch / "home");
        const fs::path file = connector.configFile(AgentKind::codex);
        writeFile(disk / "config", "a = 1\n");
        fs::create_directories(file.parent_path());
        fs::create_symlink(disk / "config", file);
        const auto backup = connector.connect(AgentKind::codex, test::noon);
        EXPECT_TRUE(backup && fileBytes(*backup) == "a = 1\n");
        EXPECT_TRUE(connector.isConnected(AgentKind::codex));
        EXPECT_EQ(fileBytes(disk / "config"), fileBytes(file));
        EXPECT_TRUE(fs::is_symlink(file));
    });
    if (result == ChildResult::skipped) GTEST_SKIP() << noMounts;
    EXPECT_EQ(result, ChildResult::passed);
}

/// Keeps a file or folder immutable while this object exists.
class Immutable {
  public:
    explicit Immutable(const fs::path& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        holds_ = change(FS_IMMUTABLE_FL, 0);
    }
    Immutable(const Immutable&) = delete;
    Immutable& operator=(const Immutable&) = delete;
    ~Immutable() {
        if (holds_) static_cast<void>(change(0, FS_IMMUTABLE_FL));
        close(descriptor_);
    }
    [[nodiscard]] bool holds() const { return holds_; }

  private:
    [[nodiscard]] bool change(int add, int remove) const {
        int flags = 0;
        if (ioctl(descriptor_, FS_IOC_GETFLAGS, &flags) != 0) return false;
        flags = (flags | add) & ~remove;
        return ioctl(descriptor_, FS_IOC_SETFLAGS, &flags) == 0;
    }

    int descriptor_;
    bool holds_ = false;
};

TEST(AgentConnectorOnDisks, anImmutableFileOrFolderIsAnErrorThatChangesNothing) {
    const test::ScratchFolder scratch;
    const AgentConnector connector(scratch.path());
    const fs::path file = connector.configFile(AgentKind::codex);
    writeFile(file, "a = 1\n");
    for (const fs::path& path : {file, file.parent_path()}) {
        const Immutable immutable(path);
        if (!immutable.holds()) GTEST_SKIP() << "this system lets the test make nothing immutable";
        EXPECT_EQ(errorCode([&] { static_cast<void>(connector.connect(AgentKind::codex, test::noon)); }),
                  EPERM);
        EXPECT_EQ(fileBytes(file), "a = 1\n");
        expectNoTemporaryFile(file.parent_path());
    }
}

/// An access-control list as the system stores it: version 2, then (tag, permissions, id) for each entry.
std::string accessList(const std::vector<std::array<std::uint32_t, 3>>& entries) {
    std::string bytes("\2\0\0\0", 4);
    const auto append = [&](std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    };
    for (const auto& [tag, permissions, id] : entries) {
        append(tag, 2);
        append(permissions, 2);
        append(id, 4);
    }
    return bytes;
}

std::optional<std::string> attribute(const fs::path& path, const char* name) {
    std::string value(1'024, '\0');
    const ssize_t size = getxattr(path.c_str(), name, value.data(), value.size());
    if (size < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(size));
    return value;
}

TEST(AgentConnectorOnDisks, accessListAndAttributesAreKept) {
    const test::ScratchFolder scratch;
    const AgentConnector connector(scratch.path());
    const fs::path file = connector.configFile(AgentKind::codex);
    writeFile(file, "a = 1\n");
    constexpr std::uint32_t none = 0xFFFFFFFF;
    // owner rw, user 1234 r, group nothing, mask r, others nothing
    const std::string list =
        accessList({{1, 6, none}, {2, 4, 1'234}, {4, 0, none}, {0x10, 4, none}, {0x20, 0, none}});
    if (setxattr(file.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0 ||
        setxattr(file.c_str(), "user.note", "mine", 4, 0) != 0) {
        GTEST_SKIP() << "this disk keeps no access-control lists or attributes";
    }
    const mode_t mode = test::modeOf(file);
    const auto backup = connector.connect(AgentKind::codex, test::noon);
    ASSERT_TRUE(backup);
    for (const fs::path& path : {file, *backup}) {
        EXPECT_EQ(attribute(path, "system.posix_acl_access"), list);
        EXPECT_EQ(attribute(path, "user.note"), "mine");
        EXPECT_EQ(test::modeOf(path), mode);
    }
}

TEST(AgentConnectorOnDisks, aFoldersDefaultListGrantsNobodyTheOldFile) {
    const test::ScratchFolder scratch;
    const AgentConnector connector(scratch.path());
    const fs::path file = connector.configFile(AgentKind::codex);
    writeFile(file, "secret = 1\n");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    constexpr std::uint32_t none = 0xFFFFFFFF;
    const std::string list =
        accessList({{1, 6, none}, {2, 6, 1'234}, {4, 4, none}, {0x10, 6, none}, {0x20, 4, none}});
    if (setxattr(file.parent_path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "this disk keeps no access-control lists";
    }
    const auto backup = connector.connect(AgentKind::codex, test::noon);
    ASSERT_TRUE(backup);
    for (const fs::path& path : {file, *backup}) {
        EXPECT_EQ(attribute(path, "system.posix_acl_access"), std::nullopt);
        EXPECT_EQ(test::modeOf(path), 0640U);
    }
}

} // namespace
} // namespace corvane
