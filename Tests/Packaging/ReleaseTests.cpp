#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// Scripts/release and Scripts/source-archive in a repository of their own, of version 1.2.3.
class ReleaseTest : public testing::Test {
  protected:
    ReleaseTest() {
        fs::create_directories(tree / "Scripts");
        for (const char* const script : {"Scripts/release", "Scripts/source-archive"})
            fs::copy_file(fs::path(CORVANE_SOURCES) / script, tree / script);
        test::writeFile(tree / "CMakeLists.txt", "project(Corvane VERSION 1.2.3 LANGUAGES CXX)\n");
        test::writeFile(tree / "CHANGELOG.md",
                        "# Changelog\n\n## [Unreleased]\n\n## [1.2.3] - 2027-02-03\n\n- A change.\n");
        git({"init", "-q"});
        commit();
    }

    test::Outcome run(const std::string& program, const std::vector<std::string>& arguments) {
        return test::runScript(program, arguments,
                               {{"PATH", "/usr/bin:/bin"},
                                {"HOME", scratch.path().string()},
                                {"GIT_AUTHOR_NAME", "A"},
                                {"GIT_AUTHOR_EMAIL", "a@example.org"},
                                {"GIT_COMMITTER_NAME", "A"},
                                {"GIT_COMMITTER_EMAIL", "a@example.org"},
                                {"GIT_CONFIG_NOSYSTEM", "1"}},
                               tree);
    }
    void git(const std::vector<std::string>& arguments) {
        const test::Outcome outcome = run("/usr/bin/git", arguments);
        ASSERT_EQ(outcome.status, 0) << outcome.output;
    }
    void commit() {
        git({"add", "-A"});
        git({"commit", "-q", "-m", "A commit"});
    }
    test::Outcome check(const std::vector<std::string>& tag = {}) {
        std::vector<std::string> arguments{"--check"};
        arguments.insert(arguments.end(), tag.begin(), tag.end());
        return run((tree / "Scripts/release").string(), arguments);
    }
    void expectFault(const test::Outcome& outcome, const std::string& words) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.output, HasSubstr(words));
    }

    test::ScratchFolder scratch{"release"};
    fs::path tree = scratch / "tree";
};

TEST_F(ReleaseTest, aConsistentReleaseMayBeTagged) {
    const test::Outcome untagged = check();
    EXPECT_EQ(untagged.status, 0);
    EXPECT_EQ(untagged.output, "Version, changelog and tag agree on 1.2.3.\n");
    git({"tag", "v1.2.3"});
    const test::Outcome tagged = check({"v1.2.3"});
    EXPECT_EQ(tagged.status, 0) << tagged.output;
}

TEST_F(ReleaseTest, theTagIsThatOfTheVersionAndOfTheCheckedOutCommit) {
    expectFault(check({"v1.2.3"}), "there is no tag v1.2.3");
    git({"tag", "v1.2.4"});
    expectFault(check({"v1.2.4"}), "the tag is v1.2.4, but the version is 1.2.3");
    git({"tag", "v1.2.3"});
    expectFault(check(), "v1.2.3 is there already");
    git({"commit", "-q", "--allow-empty", "-m", "Another commit"});
    expectFault(check({"v1.2.3"}), "v1.2.3 is not the commit that is checked out");
}

TEST_F(ReleaseTest, theChangelogHasTheVersionAtItsTop) {
    test::writeFile(tree / "CHANGELOG.md", "# Changelog\n\n## [Unreleased]\n");
    commit();
    expectFault(check(), "CHANGELOG.md has no section");
    test::writeFile(tree / "CHANGELOG.md",
                    "# Changelog\n\n## [1.2.4] - 2027-02-03\n\n## [1.2.3] - 2027-01-01\n");
    commit();
    expectFault(check(), "the newest section of CHANGELOG.md is \"## [1.2.4] - 2027-02-03\"");
}

TEST_F(ReleaseTest, nothingIsLeftBelowUnreleased) {
    test::writeFile(tree / "CHANGELOG.md",
                    "# Changelog\n\n## [Unreleased]\n\n- Forgotten.\n\n## [1.2.3] - 2027-02-03\n");
    commit();
    expectFault(check(), "changes below \"Unreleased\": - Forgotten.");
}

TEST_F(ReleaseTest, theVersionHasThreeNumbersAndEverythingIsCommitted) {
    test::writeFile(tree / "CMakeLists.txt", "project(Corvane VERSION 1.2 LANGUAGES CXX)\n");
    const test::Outcome outcome = check();
    expectFault(outcome, "not one of three numbers");
    expectFault(outcome, "changes that are not committed");
}

TEST_F(ReleaseTest, theSourceArchiveHasWhatIsCommittedAndIsReproducible) {
    test::writeFile(tree / "notes", "not committed");
    const std::string script = (tree / "Scripts/source-archive").string();
    const test::Outcome outcome = run(script, {});
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const fs::path archive = tree / "build/packages/corvane-1.2.3.tar.gz";
    EXPECT_EQ(
        run("/usr/bin/env", {"tar", "-tzf", archive.string()}).output,
        "corvane-1.2.3/\ncorvane-1.2.3/CHANGELOG.md\ncorvane-1.2.3/CMakeLists.txt\n"
        "corvane-1.2.3/Scripts/\ncorvane-1.2.3/Scripts/release\ncorvane-1.2.3/Scripts/source-archive\n");
    const std::string first = test::fileBytes(archive).value_or("");
    fs::remove(archive);
    EXPECT_EQ(run(script, {}).status, 0);
    EXPECT_EQ(test::fileBytes(archive).value_or(""), first);
}

} // namespace
} // namespace corvane
