// What ./run builds on Linux, and what `cmake --install` installs from it.

#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

std::vector<std::string> builtFiles() {
    std::vector<std::string> result{"bin/corvane", "Packaging/linux/made/changelog.gz",
                                    "Packaging/linux/made/corvane.1.gz",
                                    "Packaging/linux/made/org.corvane.Corvane.metainfo.xml"};
    for (const char* const side : {"16", "22", "24", "32", "48", "64", "128", "256", "512"})
        result.push_back(std::string("share/icons/hicolor/") + side + "x" + side + "/apps/corvane.png");
    for (const char* const size : {"16x16", "22x22", "24x24", "scalable"}) {
        for (const char* const count : {"", "1-", "2-", "3-", "4-", "5-", "6-", "7-", "8-", "9-"})
            result.push_back(std::string("share/icons/hicolor/") + size + "/status/corvane-bell-" + count +
                             "symbolic.svg");
    }
    for (const char* const sound : {"Glass", "Ping", "Hero", "Submarine", "Purr", "Pop", "Tink", "Funk"})
        result.push_back(std::string("share/corvane/sounds/") + sound + ".wav");
    return result;
}

/// This project configured as by ./run, with nothing built.
class RunBuildTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        scratch = std::make_unique<test::ScratchFolder>();
        build = *scratch / "build";
        configured = test::runScript(
            CORVANE_CMAKE,
            {"-S", CORVANE_SOURCES, "-B", build.string(), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
             "-DCORVANE_BUILD_TESTS=OFF", "-DCORVANE_BUILD_BENCHMARKS=OFF"},
            {{"PATH", "/usr/local/bin:/usr/bin:/bin"}, {"HOME", scratch->path().string()}});
    }
    static void TearDownTestSuite() { scratch.reset(); }

    void SetUp() override { ASSERT_EQ(configured.status, 0) << configured.output; }

    static test::Outcome install() {
        return test::runScript(CORVANE_CMAKE,
                               {"--install", build.string(), "--prefix", (*scratch / "prefix").string()},
                               {{"PATH", "/usr/bin:/bin"}});
    }

    static inline std::unique_ptr<test::ScratchFolder> scratch;
    static inline fs::path build;
    static inline test::Outcome configured;
};

TEST_F(RunBuildTest, theTargetOfInstalledFilesBuildsProgramIconsSoundsAndPages) {
    const test::Outcome commands =
        test::runScript(CORVANE_NINJA, {"-C", build.string(), "-t", "commands", "InstalledFiles"},
                        {{"PATH", "/usr/bin:/bin"}});
    EXPECT_EQ(commands.status, 0);
    for (const char* const command :
         {" -o bin/corvane ", "/DrawIcon hicolor ", "/SoundRecipe ", "/changes metainfo ", "gzip -9n "})
        EXPECT_THAT(commands.output, HasSubstr(command));
}

TEST_F(RunBuildTest, anInstallationWithoutOneOfItsFilesFailsAndNamesIt) {
    for (const std::string& file : builtFiles())
        test::writeFile(build / file, "built");
    const test::Outcome whole = install();
    EXPECT_EQ(whole.status, 0) << whole.output;
    for (const std::string& file : builtFiles()) {
        fs::remove(build / file);
        const test::Outcome outcome = install();
        EXPECT_NE(outcome.status, 0) << file;
        EXPECT_THAT(outcome.output, HasSubstr(file));
        test::writeFile(build / file, "built");
    }
}

/// ./run in a tree with stubs of everything that it calls.
class RunTest : public testing::Test {
  protected:
    RunTest() {
        fs::create_directories(tree_ / "build/release");
        fs::copy_file(CORVANE_SOURCES "/run", tree_ / "run");
        test::writeFile(tree_ / "build/release/build.ninja", "");
        for (const char* const program :
             {"Scripts/dependencies", "stubs/cmake", "build/release/bin/corvane"}) {
            test::writeFile(tree_ / program, "#!/bin/sh\necho \"${0##*/} $*\" >>\"$CORVANE_TEST_LOG\"\n");
            fs::permissions(tree_ / program, fs::perms::owner_all);
        }
    }

    /// What it calls where there is a display.
    std::vector<std::string> commands() {
        const test::Outcome outcome =
            test::runScript((tree_ / "run").string(), {},
                            {{"PATH", (tree_ / "stubs").string() + ":/usr/bin:/bin"},
                             {"DISPLAY", ":0"},
                             {"HOME", scratch_.path().string()},
                             {"CORVANE_TEST_LOG", (scratch_ / "log").string()}});
        EXPECT_EQ(outcome.status, 0) << outcome.output;
        return test::linesOf(test::fileBytes(scratch_ / "log").value_or(""));
    }

    test::ScratchFolder scratch_;
    fs::path tree_ = scratch_ / "tree";
};

TEST_F(RunTest, withADisplayItBuildsWhatAnInstallationNeedsAndStartsTheProgram) {
    EXPECT_THAT(commands(), ElementsAre("dependencies build",
                                        "cmake --build build/release --target InstalledFiles", "corvane "));
}

TEST_F(RunTest, aBuildWithoutTheApplicationIsConfiguredAgain) {
    test::writeFile(tree_ / "build/release/CMakeCache.txt", "CORVANE_BUILD_APP:BOOL=OFF\n");
    EXPECT_THAT(commands(), ElementsAre("dependencies build", HasSubstr("cmake --preset release"),
                                        "cmake --build build/release --target InstalledFiles", "corvane "));
}

TEST(Configuration, forASystemWithoutAPlatformSaysHowToAddOne) {
    const test::ScratchFolder scratch;
    const test::Outcome configured = test::runScript(
        CORVANE_CMAKE,
        {"-S", CORVANE_SOURCES, "-B", (scratch / "build").string(), "-G", "Ninja",
         "-DCMAKE_SYSTEM_NAME=FreeBSD", "-DCMAKE_LIBRARY_ARCHITECTURE=" CORVANE_LIBRARY_ARCHITECTURE,
         "-DCMAKE_PREFIX_PATH=/usr", "-DCORVANE_BUILD_APP=OFF", "-DCORVANE_BUILD_TESTS=OFF",
         "-DCORVANE_BUILD_BENCHMARKS=OFF"},
        {{"PATH", "/usr/local/bin:/usr/bin:/bin"}, {"HOME", scratch.path().string()}});
    EXPECT_NE(configured.status, 0);
    EXPECT_THAT(configured.output, HasSubstr("no platform for FreeBSD; docs/extending.md"));
}

TEST(Demonstration, removesThePicturesOfAnEarlierRun) {
    const test::ScratchFolder scratch;
    const fs::path tree = scratch / "tree";
    fs::create_directories(tree / "Scripts");
    fs::copy(CORVANE_SOURCES "/Scripts/demonstration", tree / "Scripts/demonstration",
             fs::copy_options::recursive);
    for (const char* const program : {"corvane", "corvane-observer"}) {
        test::writeFile(tree / "build/release/bin" / program, "#!/bin/sh\nexit 1\n");
        fs::permissions(tree / "build/release/bin" / program, fs::perms::owner_all);
    }
    test::writeFile(tree / "build/demonstration/failure.png", "earlier");
    test::writeFile(tree / "build/demonstration/16-menu.png", "earlier");
    // It ends at once, since there is no program to start.
    const test::Outcome outcome =
        test::runScript("/usr/bin/python3", {"-B", "Scripts/demonstration", "build/release"},
                        {{"PATH", "/nonexistent"}, {"TMPDIR", scratch.path().string()}}, tree);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("The demonstration failed: FileNotFoundError"));
    EXPECT_TRUE(fs::is_empty(tree / "build/demonstration"));
}

} // namespace
} // namespace corvane
