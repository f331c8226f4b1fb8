#include "Connection/SafeTrash.h"
#include "ConnectorTestSupport.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeFile;

/// The code of the error that `operation` throws; 0 for none.
int errorCode(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const files::FileError& error) {
        return error.code().value();
    }
    return 0;
}

/// Runs `body` as an ordinary user whose home is `home` and whose Trash is below `data`. In a child, since
/// the desktop's folders are found through the environment.
void withTrash(const fs::path& home, const fs::path& data, const std::function<void()>& body) {
    test::asOrdinaryUser(home.parent_path(), [&] {
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_DATA_HOME", data.c_str(), 1);
        alarm(60); // some versions of the library may search for a place forever
        body();
    });
}

TEST(SafeTrash, movesIntoAFolderThatItCreates) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "a.txt", "a");
    EXPECT_EQ(SafeTrash().move(scratch / "a.txt", scratch / "x/y"), scratch / "x/y/a.txt");
    EXPECT_EQ(fileBytes(scratch / "x/y/a.txt"), "a");
    EXPECT_FALSE(fs::exists(scratch / "a.txt"));
}

TEST(SafeTrash, takenNamesAreNumberedBeforeTheExtension) {
    const test::ScratchFolder scratch;
    const fs::path folder = scratch / "folder";
    for (const auto& [name, second, third] :
         {std::tuple{"a.txt", "a 2.txt", "a 3.txt"}, std::tuple{"plain", "plain 2", "plain 3"},
          std::tuple{".hidden", ".hidden 2", ".hidden 3"}, std::tuple{"a.tar.gz", "a.tar 2.gz", "a.tar 3.gz"},
          std::tuple{"dot.", "dot. 2", "dot. 3"}}) {
        for (const char* expected : {name, second, third}) {
            writeFile(scratch / name, expected);
            EXPECT_EQ(SafeTrash().move(scratch / name, folder), folder / expected);
            EXPECT_EQ(fileBytes(folder / expected), expected);
        }
    }
}

TEST(SafeTrash, aDanglingLinkTakesANameToo) {
    const test::ScratchFolder scratch;
    fs::create_directories(scratch / "folder");
    fs::create_symlink("nowhere", scratch / "folder/a");
    writeFile(scratch / "a", "a");
    EXPECT_EQ(SafeTrash().move(scratch / "a", scratch / "folder"), scratch / "folder/a 2");
}

TEST(SafeTrash, movesFoldersWhole) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "box/in/file", "x");
    EXPECT_EQ(SafeTrash().move(scratch / "box", scratch / "to"), scratch / "to/box");
    EXPECT_EQ(fileBytes(scratch / "to/box/in/file"), "x");
}

TEST(SafeTrash, movesToAnotherDisk) {
    const test::ScratchFolder scratch;
    const test::ScratchFolder memory = test::inMemory();
    writeFile(scratch / "box/in/file.sh", "x");
    fs::permissions(scratch / "box/in/file.sh", fs::perms::owner_all);
    fs::create_symlink("file.sh", scratch / "box/in/link");
    EXPECT_EQ(SafeTrash().move(scratch / "box", memory.path()), memory / "box");
    EXPECT_EQ(fileBytes(memory / "box/in/file.sh"), "x");
    EXPECT_EQ(test::modeOf(memory / "box/in/file.sh"), 0700U);
    EXPECT_EQ(fs::read_symlink(memory / "box/in/link"), "file.sh");
    EXPECT_FALSE(fs::exists(scratch / "box"));
}

TEST(SafeTrash, slashesAtTheEndOfAPathAreIgnored) {
    const test::ScratchFolder scratch;
    for (const std::string slashes : {"/", "//"}) {
        writeFile(scratch / "box/in/file", "x");
        writeFile(scratch / "a.txt", "a");
        EXPECT_EQ(SafeTrash().move((scratch / "box").string() + slashes, scratch / "to"), scratch / "to/box");
        EXPECT_EQ(SafeTrash().move((scratch / "a.txt").string() + slashes, scratch / "to"),
                  scratch / "to/a.txt");
        EXPECT_EQ(fileBytes(scratch / "to/box/in/file"), "x");
        EXPECT_EQ(fileBytes(scratch / "to/a.txt"), "a");
        fs::remove_all(scratch / "to");
    }
    fs::create_directories(scratch / "target");
    fs::create_directory_symlink("target", scratch / "link");
    EXPECT_EQ(SafeTrash().move((scratch / "link").string() + "/", scratch / "to"), scratch / "to/link");
    EXPECT_TRUE(fs::is_symlink(scratch / "to/link")) << "the link moves, not its target";
    EXPECT_TRUE(fs::is_directory(scratch / "target"));
}

TEST(SafeTrash, aPathThatEndsInNoNameIsRefused) {
    const test::ScratchFolder scratch;
    const test::ScratchFolder memory = test::inMemory();
    writeFile(scratch / "box/in/file", "x");
    for (const char* path : {"box/.", "box/in/..", "box/./"}) {
        EXPECT_EQ(errorCode([&] { SafeTrash().move(scratch / path, memory.path()); }), EINVAL) << path;
        withTrash(scratch.path(), scratch / "data",
                  [&] { EXPECT_EQ(errorCode([&] { SafeTrash().trash(scratch / path); }), EINVAL) << path; });
    }
    EXPECT_EQ(errorCode([&] { SafeTrash().move("", memory.path()); }), EINVAL);
    EXPECT_EQ(fileBytes(scratch / "box/in/file"), "x");
    EXPECT_TRUE(test::namesIn(memory.path()).empty());
}

TEST(SafeTrash, failuresChangeNothing) {
    const test::ScratchFolder scratch;
    EXPECT_THROW(SafeTrash().move(scratch / "missing", scratch / "to"), files::FileError);
    writeFile(scratch / "file", "x");
    writeFile(scratch / "a", "a");
    EXPECT_THROW(SafeTrash().move(scratch / "a", scratch / "file/below"), files::FileError);
    EXPECT_EQ(fileBytes(scratch / "a"), "a");
    EXPECT_THROW(SafeTrash().trash(scratch / "missing"), files::FileError);
}

TEST(SafeTrash, trashMovesToTheUsersTrashWithoutDestroying) {
    const test::ScratchFolder scratch;
    fs::create_directories(scratch / "data");
    for (const std::string slash : {"", "/"}) {
        writeFile(scratch / "old.txt", "kept");
        withTrash(scratch.path(), scratch / "data", [&] {
            const std::optional<fs::path> trashed = SafeTrash().trash((scratch / "old.txt").string() + slash);
            EXPECT_FALSE(fs::exists(scratch / "old.txt"));
            ASSERT_TRUE(trashed);
            EXPECT_TRUE(trashed->filename().string().starts_with("old")) << *trashed;
            EXPECT_EQ(fileBytes(*trashed), "kept");
            fs::remove(*trashed);
        });
    }
}

TEST(SafeTrash, aRefusedTrashIsMissingPermissionIfTheItemMayNotLeaveItsFolder) {
    const test::ScratchFolder scratch;
    fs::create_directories(scratch / "data");
    writeFile(scratch / "closed/a", "a");
    ASSERT_EQ(chmod((scratch / "closed").c_str(), 0500), 0);
    withTrash(scratch.path(), scratch / "data",
              [&] { EXPECT_EQ(errorCode([&] { SafeTrash().trash(scratch / "closed/a"); }), EACCES); });
    EXPECT_EQ(fileBytes(scratch / "closed/a"), "a");
}

TEST(SafeTrash, aRefusedTrashIsAMissingTrashIfNoneCanBeCreated) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "b", "b");
    writeFile(scratch / "file", "in the place of a folder");
    writeFile(scratch / "taken/Trash", "in the place of the Trash");
    for (const char* folder : {"full/Trash/info", "full/Trash/files", "working/files", "working/info"})
        fs::create_directories(scratch / folder);
    for (const char* folder : {"full/Trash/info", "working/info"})
        ASSERT_EQ(chmod((scratch / folder).c_str(), 0500), 0);
    for (const char* data : {"file/below", "taken", "full"}) {
        withTrash(scratch.path(), scratch / data, [&] {
            fs::current_path(scratch / "working");
            EXPECT_EQ(errorCode([&] { SafeTrash().trash(scratch / "b"); }), ENOTSUP) << data;
        });
        EXPECT_EQ(fileBytes(scratch / "b"), "b") << data;
    }
}

TEST(SafeTrash, theTrashIsCreatedIfTheUserHasNoneYet) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "c", "c");
    withTrash(scratch.path(), scratch / "not/there/yet", [&] {
        const std::optional<fs::path> trashed = SafeTrash().trash(scratch / "c");
        ASSERT_TRUE(trashed);
        EXPECT_EQ(fileBytes(*trashed), "c");
    });
    EXPECT_FALSE(fs::exists(scratch / "c"));
}

} // namespace
} // namespace corvane
