#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Linux/LoginItem.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace corvane {
namespace {

namespace fs = std::filesystem;

class LinuxLoginItemTest : public testing::Test {
  protected:
    LinuxLoginItemTest() {
        test::writeFile(program_, "#!/bin/sh\n");
        fs::permissions(program_, fs::perms::owner_all);
    }

    test::ScratchFolder folder_;
    fs::path program_ = folder_ / "my apps/100% \"corvane\"";
    fs::path file_ = folder_ / "config/autostart/corvane.desktop";
    LinuxLoginItem item_{file_, program_};
};

TEST_F(LinuxLoginItemTest, isOffWithoutAnEntry) {
    EXPECT_FALSE(item_.isEnabled());
    item_.setEnabled(false);
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(LinuxLoginItemTest, switchingOnWritesAnEntryThatStartsTheProgram) {
    item_.setEnabled(true);
    EXPECT_TRUE(item_.isEnabled());
    const std::string entry = test::fileBytes(file_).value_or("");
    EXPECT_TRUE(entry.starts_with("[Desktop Entry]\nType=Application\n")) << entry;
    EXPECT_EQ(DesktopEntry::execProgram(entry), program_.string());
    EXPECT_NE(entry.find(" --autostart\nIcon="), std::string::npos) << entry;
    item_.setEnabled(false);
    EXPECT_FALSE(item_.isEnabled());
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(LinuxLoginItemTest, switchingOnRepairsAnEntryForAnotherPath) {
    test::writeFile(file_, "[Desktop Entry]\nExec=/gone/corvane\n");
    EXPECT_FALSE(item_.isEnabled());
    item_.setEnabled(true);
    EXPECT_EQ(DesktopEntry::execProgram(test::fileBytes(file_).value_or("")), program_.string());
}

TEST_F(LinuxLoginItemTest, followsExternalChangesOfTheEntry) {
    item_.setEnabled(true);
    const std::string entry = test::fileBytes(file_).value_or("");
    test::writeFile(file_, entry + "Hidden=true\n");
    EXPECT_FALSE(item_.isEnabled());
    item_.setEnabled(true);
    EXPECT_TRUE(item_.isEnabled());
    fs::remove(file_);
    EXPECT_FALSE(item_.isEnabled());
    test::writeFile(file_, "\xFF\x00 not an entry");
    EXPECT_FALSE(item_.isEnabled());
}

TEST_F(LinuxLoginItemTest, aMissingProgramIsNotStarted) {
    item_.setEnabled(true);
    fs::remove(program_);
    EXPECT_FALSE(item_.isEnabled());
}

TEST_F(LinuxLoginItemTest, aFailureIsReportedInWordsAndChangesNothing) {
    // A file in place of the folder stops everybody, even root.
    test::writeFile(folder_ / "config/autostart", "in the way");
    try {
        item_.setEnabled(true);
        FAIL() << "wrote through a file";
    } catch (const LoginItemError& error) {
        EXPECT_FALSE(std::string(error.what()).empty());
    }
    EXPECT_FALSE(item_.isEnabled());
    EXPECT_EQ(test::fileBytes(folder_ / "config/autostart"), "in the way");
}

} // namespace
} // namespace corvane
