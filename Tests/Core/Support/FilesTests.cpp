#include "ErrorCode.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using files::FileState;
using test::errorCode;
using test::fileBytes;
using test::writeFile;

TEST(Files, readsWholeFilesWithTheirState) {
    const test::ScratchFolder scratch;
    for (const std::string& bytes : {std::string(), std::string("a\0b", 3), std::string(3'000'000, 'x')}) {
        writeFile(scratch / "file", bytes);
        const files::FileContent content = files::read(scratch / "file");
        EXPECT_EQ(content.bytes, bytes);
        EXPECT_EQ(content.state, files::state(scratch / "file"));
        EXPECT_EQ(content.state.size, static_cast<std::int64_t>(bytes.size()));
    }
}

TEST(Files, readsOnlyRegularFilesAndNeverBlocks) {
    const test::ScratchFolder scratch;
    EXPECT_EQ(errorCode([&] { static_cast<void>(files::read(scratch / "missing")); }), ENOENT);
    EXPECT_EQ(errorCode([&] { static_cast<void>(files::read(scratch.path())); }), EISDIR);
    ASSERT_EQ(mkfifo((scratch / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorCode([&] { static_cast<void>(files::read(scratch / "pipe")); }), EINVAL);
    EXPECT_EQ(errorCode([&] { static_cast<void>(files::read("/dev/null")); }), EINVAL);
}

TEST(Files, stateDistinguishesFiles) {
    const test::ScratchFolder scratch;
    EXPECT_EQ(files::state(scratch / "file"), FileState());
    writeFile(scratch / "file", "abc");
    const FileState first = files::state(scratch / "file");
    EXPECT_EQ(first.kind, FileState::Kind::plain);
    EXPECT_EQ(first, files::state(scratch / "file"));

    test::setModificationDate(scratch / "file", Date(first.modified.seconds(), 1));
    EXPECT_NE(files::state(scratch / "file"), first) << "to the nanosecond";
    test::setModificationDate(scratch / "file", first.modified);
    EXPECT_EQ(files::state(scratch / "file"), first);

    writeFile(scratch / "other", "abc");
    test::setModificationDate(scratch / "other", first.modified);
    EXPECT_NE(files::state(scratch / "other"), first) << "another file of the same size and date";
    struct stat status {};
    ASSERT_EQ(stat((scratch / "file").c_str(), &status), 0);
    EXPECT_EQ(first.device, status.st_dev) << "numbers are used again on another disk";
    EXPECT_EQ(files::state(scratch.path()).kind, FileState::Kind::folder);
    fs::create_symlink("nowhere", scratch / "dangling");
    EXPECT_EQ(files::state(scratch / "dangling").kind, FileState::Kind::absent);
}

TEST(Files, createsFoldersWithAllParents) {
    const test::ScratchFolder scratch;
    files::createDirectories(scratch / "a/b/c/");
    EXPECT_TRUE(fs::is_directory(scratch / "a/b/c"));
    files::createDirectories(scratch / "a/b/c");
    fs::create_directory_symlink("a", scratch / "link");
    files::createDirectories(scratch / "link");
    files::createDirectories(scratch / "link/d");
    EXPECT_TRUE(fs::is_directory(scratch / "a/d"));
    EXPECT_TRUE(fs::is_symlink(scratch / "link"));
    writeFile(scratch / "file", "x");
    EXPECT_EQ(errorCode([&] { files::createDirectories(scratch / "file"); }), EEXIST);
    EXPECT_EQ(errorCode([&] { files::createDirectories(scratch / "file/below"); }), ENOTDIR);
}

TEST(Files, writesAtomicallyOverAndBesideExistingFiles) {
    const test::ScratchFolder scratch;
    const fs::path file = scratch / "new/folder/file";
    files::writeAtomically(file, "one");
    EXPECT_EQ(fileBytes(file), "one");
    fs::create_hard_link(file, scratch / "kept");
    files::writeAtomically(file, std::string(1'000'000, 'x'));
    EXPECT_EQ(fileBytes(file), std::string(1'000'000, 'x'));
    EXPECT_EQ(fileBytes(scratch / "kept"), "one") << "the old file was not written into";
    files::writeAtomically(file, "");
    EXPECT_EQ(fileBytes(file), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1);
}

TEST(Files, replacesOnlyUnchangedFiles) {
    const test::ScratchFolder scratch;
    const fs::path file = scratch / "file";
    EXPECT_TRUE(files::replaceIfUnchanged(file, "one", FileState()));
    EXPECT_FALSE(files::replaceIfUnchanged(file, "two", FileState())) << "it is not absent any more";
    EXPECT_EQ(fileBytes(file), "one");
    const FileState state = files::state(file);
    EXPECT_TRUE(files::replaceIfUnchanged(file, "two", state));
    EXPECT_FALSE(files::replaceIfUnchanged(file, "three", state));
    EXPECT_EQ(fileBytes(file), "two");
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch.path()), {}), 1);
}

TEST(Files, refusesToReplaceAnythingButARegularFile) {
    const test::ScratchFolder scratch;
    EXPECT_EQ(errorCode([&] { files::writeAtomically(scratch.path(), "x"); }), EISDIR);
    fs::create_symlink("/dev/null", scratch / "device");
    EXPECT_EQ(errorCode([&] { files::writeAtomically(scratch / "device", "x"); }), EINVAL);
    fs::create_symlink("b", scratch / "a");
    fs::create_symlink("a", scratch / "b");
    EXPECT_EQ(errorCode([&] { files::writeAtomically(scratch / "a", "x"); }), ELOOP);
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch.path()), {}), 3);
}

TEST(Files, backupsNeverReplaceAnything) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "file", "one");
    ASSERT_EQ(chmod((scratch / "file").c_str(), 0640), 0);
    files::writeBackup(scratch / "backup", "one", scratch / "file");
    EXPECT_EQ(fileBytes(scratch / "backup"), "one");
    struct stat status {};
    ASSERT_EQ(stat((scratch / "backup").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(errorCode([&] { files::writeBackup(scratch / "backup", "two", scratch / "file"); }), EEXIST);
    EXPECT_EQ(errorCode([&] { files::linkBackup(scratch / "backup", scratch / "file"); }), EEXIST);
    EXPECT_EQ(fileBytes(scratch / "backup"), "one");
    EXPECT_EQ(errorCode([&] { files::writeBackup(scratch / "other", "two", scratch / "missing"); }), ENOENT);
    EXPECT_FALSE(files::nameIsTaken(scratch / "other"));
    fs::create_symlink("nowhere", scratch / "dangling");
    EXPECT_TRUE(files::nameIsTaken(scratch / "dangling"));
    EXPECT_EQ(errorCode([&] { files::writeBackup(scratch / "dangling", "x", scratch / "file"); }), EEXIST);
}

TEST(Files, ownerAndGroupAreKeptIfPermitted) {
    if (geteuid() != 0) GTEST_SKIP() << "only the administrator may give files away";
    const test::ScratchFolder scratch;
    const fs::path file = scratch / "file";
    writeFile(file, "one");
    ASSERT_EQ(chown(file.c_str(), 1'234, 5'678), 0);
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    files::writeAtomically(file, "two");
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1'234U);
    EXPECT_EQ(status.st_gid, 5'678U);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST(Files, writesThroughFortyLinksAndNoMore) {
    const test::ScratchFolder scratch;
    writeFile(scratch / "0", "old");
    for (int i = 1; i <= 41; ++i)
        fs::create_symlink(std::to_string(i - 1), scratch / std::to_string(i));
    files::writeAtomically(scratch / "40", "new");
    EXPECT_EQ(fileBytes(scratch / "0"), "new");
    EXPECT_EQ(errorCode([&] { files::writeAtomically(scratch / "41", "newer"); }), ELOOP);
    EXPECT_EQ(fileBytes(scratch / "0"), "new");
}

} // namespace
} // namespace corvane
