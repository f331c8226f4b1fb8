#include "Connection/SafeTrash.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
namespace faults = test::faults;
using files::FileError;
using test::fileBytes;
using test::writeFile;

/// Moves `file` into `folder` on a file system whose non-replacing rename fails with `error`; `before` runs
/// just before that call. Returns the error code, 0 for none.
int moveCode(
    const fs::path& file, const fs::path& folder, int error, const std::function<void()>& before = [] {}) {
    faults::arm({1, faults::Action::fail, error,
                 [&](std::string_view /*function*/, int /*descriptor*/) { before(); },
                 [](std::string_view function, std::string_view) { return function == "renameat2"; }});
    int code = 0;
    try {
        SafeTrash().move(file, folder);
    } catch (const FileError& thrown) {
        EXPECT_EQ(thrown.operation(), FileError::Operation::move);
        code = thrown.code().value();
    }
    EXPECT_EQ(faults::disarm(), 1);
    return code;
}

TEST(SafeTrashFaults, movesWithoutANonReplacingRename) {
    for (const int unknown : {EINVAL, ENOSYS}) {
        const test::ScratchFolder scratch;
        writeFile(scratch / "a", "a");
        EXPECT_EQ(moveCode(scratch / "a", scratch / "to", unknown), 0);
        EXPECT_EQ(fileBytes(scratch / "to/a"), "a");
        EXPECT_FALSE(fs::exists(scratch / "a"));
    }
}

TEST(SafeTrashFaults, replacesNothingThatAppearsMeanwhileWithoutANonReplacingRename) {
    for (const int unknown : {EINVAL, ENOSYS}) {
        const test::ScratchFolder scratch;
        writeFile(scratch / "a", "a");
        EXPECT_EQ(moveCode(scratch / "a", scratch / "to", unknown,
                           [&] { writeFile(scratch / "to/a", "another program's"); }),
                  EEXIST);
        EXPECT_EQ(fileBytes(scratch / "to/a"), "another program's");
        EXPECT_EQ(fileBytes(scratch / "a"), "a");
    }
}

TEST(SafeTrashFaults, aFileThatMayNotLeaveItsFolderIsNotLeftOnTwoDisks) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "from/a", "a");
    fs::create_directory(scratch / "to");
    fs::permissions(scratch / "to", fs::perms(0777));
    fs::permissions(scratch / "from", fs::perms(0555));
    fs::permissions(scratch.path().parent_path(), fs::perms(0755));
    const pid_t child = fork();
    if (child == 0) {
        // Root may remove anything.
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && setuid(nobody) != 0) _exit(2);
        // Else the refusal would come from a folder above.
        if (access((scratch / "from/a").c_str(), R_OK) != 0) _exit(3);
        _exit(moveCode(scratch / "from/a", scratch / "to", EXDEV) == EACCES ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(fileBytes(scratch / "from/a"), "a");
    EXPECT_FALSE(fs::exists(scratch / "to/a"));
}

TEST(SafeTrashFaults, anyOtherFailureIsReportedUnchanged) {
    for (const int error : {EACCES, EIO, EEXIST}) {
        const test::ScratchFolder scratch;
        writeFile(scratch / "a", "a");
        EXPECT_EQ(moveCode(scratch / "a", scratch / "to", error), error);
        EXPECT_EQ(fileBytes(scratch / "a"), "a");
        EXPECT_FALSE(fs::exists(scratch / "to/a"));
    }
}

} // namespace
} // namespace corvane
