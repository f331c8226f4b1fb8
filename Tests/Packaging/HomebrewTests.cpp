#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

const std::string everything =
    "cmake ninja qtbase qtsvg simdjson nlohmann-json icu4c@77 googletest google-benchmark tomlplusplus "
    "ccache shellcheck dash";

/// A copy of the scripts, run with stubs that behave like a Mac with Homebrew.
class HomebrewTest : public testing::Test {
  protected:
    HomebrewTest() {
        for (const char* const script : {"run", "test", "Scripts/dependencies", "Scripts/disk-image"}) {
            fs::create_directories((folder_ / script).parent_path());
            fs::copy_file(fs::path(CORVANE_SOURCES) / script, folder_ / script);
        }
        for (const char* const check :
             {"check-docs", "check-rules", "check-shell", "check-workflow", "update-translations"}) {
            const fs::path file = folder_ / "Scripts" / check;
            test::writeFile(file,
                            "#!/bin/sh\necho \"" + std::string(check) + " $*\" >>\"$CORVANE_TEST_LOG\"\n");
            fs::permissions(file, fs::perms::owner_all);
        }
        environment_ = {{"PATH", CORVANE_HOMEBREW_STUBS ":" CORVANE_STUBS ":/usr/bin:/bin"},
                        {"HOME", scratch_.path().string()},
                        {"TMPDIR", scratch_.path().string()},
                        {"CORVANE_TEST_LOG", log_.string()},
                        {"CORVANE_TEST_INSTALLED", everything}};
    }

    test::Outcome call(const std::string& script, const std::vector<std::string>& arguments = {}) {
        return test::runScript((folder_ / script).string(), arguments, environment_, folder_);
    }
    std::vector<std::string> calls() { return test::linesOf(test::fileBytes(log_).value_or("")); }

    test::ScratchFolder scratch_;
    fs::path folder_ = scratch_ / "tree";
    fs::path log_ = scratch_ / "log";
    std::map<std::string, std::string> environment_;
};

TEST_F(HomebrewTest, nothingIsInstalledIfNothingIsMissing) {
    for (const char* const group : {"build", "demo", "test", "desktops"}) {
        const test::Outcome outcome = call("Scripts/dependencies", {group});
        EXPECT_EQ(outcome.status, 0) << group;
        EXPECT_EQ(outcome.output, "") << group;
    }
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(HomebrewTest, missingPackagesAreInstalledInOneGo) {
    environment_["CORVANE_TEST_INSTALLED"] = "cmake ninja icu4c@78";
    environment_["CORVANE_TEST_OFFERED"] = "qtbase qtsvg qt";
    EXPECT_EQ(call("Scripts/dependencies", {"build"}).status, 0);
    EXPECT_THAT(calls(), ElementsAre("brew install qtbase qtsvg simdjson nlohmann-json"));
}

TEST_F(HomebrewTest, theOldFormulaOfAllOfQtIsAcceptedToo) {
    environment_["CORVANE_TEST_INSTALLED"] = "cmake ninja qt simdjson nlohmann-json icu4c";
    EXPECT_EQ(call("Scripts/dependencies", {"build"}).output, "");
    environment_["CORVANE_TEST_INSTALLED"] = "cmake ninja simdjson nlohmann-json icu4c";
    environment_["CORVANE_TEST_OFFERED"] = "qt";
    EXPECT_EQ(call("Scripts/dependencies", {"build"}).status, 0);
    EXPECT_THAT(calls(), ElementsAre("brew install qt"));
}

TEST_F(HomebrewTest, withoutANetworkItSaysWhatToInstall) {
    environment_["CORVANE_TEST_INSTALLED"] = "cmake ninja qt simdjson nlohmann-json";
    environment_["CORVANE_TEST_OFFLINE"] = "1";
    const test::Outcome outcome = call("Scripts/dependencies", {"build"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("install these first:\n  icu4c\n"));
}

TEST_F(HomebrewTest, withoutTheCommandLineToolsItSaysHowToGetThem) {
    environment_["CORVANE_TEST_NO_TOOLS"] = "1";
    const test::Outcome outcome = call("Scripts/dependencies", {"build"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("  xcode-select --install\n"));
}

TEST_F(HomebrewTest, withoutHomebrewItSaysWhatItNeeds) {
    const fs::path stubs = scratch_ / "stubs";
    fs::create_directory(stubs);
    for (const char* const name : {"uname", "xcode-select"})
        fs::copy_file(fs::path(CORVANE_HOMEBREW_STUBS) / name, stubs / name);
    environment_["PATH"] = stubs.string() + ":/usr/bin:/bin";
    const test::Outcome outcome = call("Scripts/dependencies", {"build"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("Homebrew is missing"));
    EXPECT_THAT(outcome.output, HasSubstr("cmake ninja"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("libxcb")));
}

TEST_F(HomebrewTest, runBuildsSignsAndOpensTheBundle) {
    const test::Outcome outcome = call("run");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    ASSERT_EQ(calls().size(), 4U) << outcome.output;
    EXPECT_THAT(calls()[0], HasSubstr("cmake --preset release"));
    EXPECT_THAT(calls()[0], HasSubstr("with /opt/homebrew/opt/icu4c"));
    EXPECT_THAT(calls()[1], HasSubstr("cmake --build build/release --target Corvane with"));
    EXPECT_EQ(calls()[2], "codesign --force --sign - build/release/bin/Corvane.app");
    EXPECT_EQ(calls()[3], "open build/release/bin/Corvane.app");
}

TEST_F(HomebrewTest, runOpensNothingThatDidNotBuild) {
    environment_["CORVANE_TEST_FAIL"] = "build/release";
    const test::Outcome outcome = call("run");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("The build failed."));
    EXPECT_EQ(calls().size(), 2U);
}

TEST_F(HomebrewTest, runRefusesTheDemonstrationWithoutAnXServer) {
    for (const char* const argument : {"--demo", "--update-pictures"}) {
        const test::Outcome outcome = call("run", {argument});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.output, HasSubstr("the demonstration needs an X server, which macOS has not"));
    }
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(HomebrewTest, theDiskImageIsPackedFromTheReleaseBuild) {
    const test::Outcome outcome = call("Scripts/disk-image");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(
        calls(),
        ElementsAre("cmake --preset release -DCORVANE_BUILD_BENCHMARKS=OFF with /opt/homebrew/opt/icu4c",
                    "cmake --build build/release with /opt/homebrew/opt/icu4c",
                    "cpack --config build/release/CPackConfig.cmake -B build/release"));
}

TEST_F(HomebrewTest, packingTheDiskImageIsTriedUpToThreeTimes) {
    environment_["CORVANE_TEST_FAIL"] = "--config";
    const test::Outcome outcome = call("Scripts/disk-image");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("attempt 3 failed"));
    EXPECT_EQ(calls().size(), 5U);
}

TEST_F(HomebrewTest, aDiskImageIsRefusedOnOtherSystems) {
    environment_["PATH"] = "/usr/bin:/bin";
    const test::Outcome outcome = call("Scripts/disk-image");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("can only be built on macOS"));
}

TEST_F(HomebrewTest, fuzzingIsLeftToLinux) {
    const test::Outcome outcome = call("test", {"--fuzz", "5"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("the fuzz targets run on Linux only"));
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{{"--fuzz"},
                                                                                       {"--fuzz", "0"},
                                                                                       {"--fuzz", "x"},
                                                                                       {"--fuzz", "5", "6"},
                                                                                       {"--quick", "5"},
                                                                                       {"--other"}})
        EXPECT_EQ(call("test", wrong).status, 2) << wrong.back();
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(HomebrewTest, testRunsWhatAMacCanAndListsWhatIsLeftToLinux) {
    const test::Outcome outcome = call("test");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, HasSubstr("run on Linux only."));
    EXPECT_THAT(outcome.output, HasSubstr("\n11 passed, 0 failed\n"));
    std::vector<std::string> tests;
    for (const std::string& line : calls()) {
        if (line.starts_with("ctest")) tests.push_back(line);
    }
    ASSERT_EQ(tests.size(), 2U);
    EXPECT_THAT(tests[0], HasSubstr(" -LE desktop|mac "));
    EXPECT_THAT(tests[0], HasSubstr(" on offscreen"));
    EXPECT_THAT(tests[1], HasSubstr(" -L mac on cocoa"));
}

TEST_F(HomebrewTest, aQuickTestIsTheUnitTestsAlone) {
    const test::Outcome outcome = call("test", {"--quick"});
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, HasSubstr("\n1 passed, 0 failed\n"));
}

TEST_F(HomebrewTest, theFirstLinesOfATestListItsPartsAndHowLongTheyTookLastTime) {
    const std::string plan = "This will\n  - install missing packages\n  - build in build/dev "
                             "and run the unit tests\n";
    const test::Outcome first = call("test", {"--quick"});
    EXPECT_TRUE(first.output.starts_with(plan + "\n== Packages")) << first.output;
    const fs::path times = folder_ / "build/test-seconds-quick";
    EXPECT_THAT(test::fileBytes(times).value_or(""), testing::MatchesRegex("[0-9]+\n"));
    test::writeFile(times, "41\n");
    const test::Outcome second = call("test", {"--quick"});
    EXPECT_TRUE(second.output.starts_with(plan + "The last time that took 41 s.\n")) << second.output;
    // The duration of another mode says nothing about this one.
    EXPECT_THAT(call("test").output, testing::Not(HasSubstr("The last time")));
}

TEST_F(HomebrewTest, aSkippedCheckCountsAsNeitherPassedNorFailed) {
    test::writeFile(folder_ / "Scripts/check-workflow", "#!/bin/sh\nexit 77\n");
    EXPECT_THAT(call("test").output,
                HasSubstr("\n2 tests or checks were skipped by themselves; they count as "
                          "neither.\n\n9 passed, 0 failed\n"));
    test::writeFile(folder_ / "Scripts/check-workflow", "#!/bin/sh\nexit 1\n");
    const test::Outcome outcome = call("test");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("\n9 passed, 2 failed\n"));
}

} // namespace
} // namespace corvane
