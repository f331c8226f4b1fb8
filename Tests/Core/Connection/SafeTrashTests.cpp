#include "Connection/SafeTrash.h"
#include "ConnectorTestSupport.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeFile;

TEST(SafeTrash, movesIntoAFolderThatItMakes) {
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
    // In a child, since the desktop's folders are found through the environment.
    const test::ChildResult result = test::inChild([&] {
        setenv("HOME", scratch.path().c_str(), 1);
        setenv("XDG_DATA_HOME", (scratch / "data").c_str(), 1);
        fs::create_directories(scratch / "data");
        writeFile(scratch / "old.txt", "kept");
        const std::optional<fs::path> trashed = SafeTrash().trash(scratch / "old.txt");
        EXPECT_FALSE(fs::exists(scratch / "old.txt"));
        EXPECT_TRUE(trashed && fileBytes(*trashed) == "kept");
        if (trashed) fs::remove(*trashed);
        return test::ChildResult::passed;
    });
    EXPECT_EQ(result, test::ChildResult::passed);
}

} // namespace
} // namespace corvane
