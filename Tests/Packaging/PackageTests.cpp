#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace corvane {
namespace {

/// Which maintainer Scripts/package names in the packages.
class MaintainerTest : public testing::Test {
  protected:
    test::Outcome maintainer(std::map<std::string, std::string> environment) {
        environment.insert(
            {{"PATH", "/usr/bin:/bin"}, {"HOME", scratch.path().string()}, {"GIT_CONFIG_NOSYSTEM", "1"}});
        // The configuration of the sources' own repository may name a user.
        environment.insert({"GIT_DIR", (scratch / "none").string()});
        return test::runScript(CORVANE_SOURCES "/Scripts/package", {"--maintainer"}, environment);
    }
    void configureGit() {
        test::writeFile(scratch / ".gitconfig", "[user]\n\tname = Git User\n\temail = git@example.org\n");
    }

    test::ScratchFolder scratch{"package"};
};

TEST_F(MaintainerTest, theProjectsOwnVariableTakesPrecedence) {
    configureGit();
    const test::Outcome outcome = maintainer({{"CORVANE_MAINTAINER", "A Packager <a@example.org>"},
                                              {"DEBFULLNAME", "A Developer"},
                                              {"DEBEMAIL", "b@example.org"}});
    EXPECT_EQ(outcome.output, "A Packager <a@example.org>\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(MaintainerTest, thenTheVariablesOfDebian) {
    configureGit();
    EXPECT_EQ(maintainer({{"DEBFULLNAME", "A Developer"}, {"DEBEMAIL", "b@example.org"}}).output,
              "A Developer <b@example.org>\n");
    EXPECT_EQ(maintainer({{"DEBEMAIL", "A Developer <b@example.org>"}}).output,
              "A Developer <b@example.org>\n");
}

TEST_F(MaintainerTest, thenTheUserOfGit) {
    configureGit();
    EXPECT_EQ(maintainer({}).output, "Git User <git@example.org>\n");
    EXPECT_EQ(maintainer({{"DEBEMAIL", "b@example.org"}}).output, "Git User <git@example.org>\n")
        << "a name without an address, or the other way round, is not mixed with another source";
}

TEST_F(MaintainerTest, withoutAnyItReportsWhatToSet) {
    const test::Outcome outcome = maintainer({});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                testing::AllOf(testing::HasSubstr("DEBFULLNAME"), testing::HasSubstr("DEBEMAIL"),
                               testing::HasSubstr("CORVANE_MAINTAINER")));
}

TEST_F(MaintainerTest, aNameWithoutAnAddressIsRefused) {
    for (const char* const given :
         {"A Packager", "a@example.org", "<a@example.org>", "A Packager <nowhere>"}) {
        const test::Outcome outcome = maintainer({{"CORVANE_MAINTAINER", given}});
        EXPECT_EQ(outcome.status, 1) << given;
        EXPECT_THAT(outcome.output, testing::HasSubstr(given));
    }
}

} // namespace
} // namespace corvane
