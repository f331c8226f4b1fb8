#include "Packaging/Script.h"
#include "Platform/Linux/DesktopEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace corvane {
namespace {

namespace fs = std::filesystem;

/// This build, installed into a folder of its own.
class InstallTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        scratch = std::make_unique<test::ScratchFolder>();
        outcome =
            test::runScript(CORVANE_CMAKE, {"--install", CORVANE_BUILD, "--prefix", scratch->path().string()},
                            {{"PATH", "/usr/bin:/bin"}});
    }
    static void TearDownTestSuite() { scratch.reset(); }

    void SetUp() override { ASSERT_EQ(outcome.status, 0) << outcome.output; }

    static inline std::unique_ptr<test::ScratchFolder> scratch;
    static inline test::Outcome outcome;
};

TEST_F(InstallTest, exactlyTheFilesOfTheApplicationAreInstalled) {
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(scratch->path())) {
        if (!entry.is_directory()) found.insert(fs::relative(entry.path(), scratch->path()).string());
    }
    std::set<std::string> wanted{"bin/corvane", "share/applications/corvane.desktop",
                                 "share/icons/hicolor/scalable/apps/corvane.svg"};
    for (const char* const side : {"16", "22", "24", "32", "48", "64", "128", "256", "512"})
        wanted.insert(std::string("share/icons/hicolor/") + side + "x" + side + "/apps/corvane.png");
    for (const char* const sound : {"Glass", "Ping", "Hero", "Submarine", "Purr", "Pop", "Tink", "Funk"})
        wanted.insert(std::string("share/corvane/sounds/") + sound + ".wav");
    EXPECT_EQ(found, wanted);
}

TEST_F(InstallTest, theDesktopEntryStartsTheProgramAndNamesItsWindowsAndIcon) {
    const std::string entry =
        test::fileBytes(scratch->path() / "share/applications/corvane.desktop").value_or("");
    EXPECT_EQ(DesktopEntry::execProgram(entry), "corvane");
    EXPECT_FALSE(DesktopEntry::isDisabled(entry));
    const std::vector<std::string> lines = test::linesOf(entry);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "[Desktop Entry]");
    for (const char* const line : {"Type=Application", "Name=Corvane", "Icon=corvane",
                                   "StartupWMClass=Corvane", "Terminal=false", "Categories=Development;"})
        EXPECT_THAT(lines, testing::Contains(line));
}

TEST_F(InstallTest, theDesktopEntryIsValid) {
    if (std::string(CORVANE_DESKTOP_FILE_VALIDATE).empty())
        GTEST_SKIP() << "desktop-file-validate is not installed";
    const test::Outcome validation = test::runScript(
        CORVANE_DESKTOP_FILE_VALIDATE,
        {"--no-hints", (scratch->path() / "share/applications/corvane.desktop").string()}, {});
    EXPECT_EQ(validation.status, 0);
    EXPECT_EQ(validation.output, "");
}

} // namespace
} // namespace corvane
