#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr const char* released = R"(# Changelog

What changes for users.

## [Unreleased]

## [1.1.0] - 2027-02-03

### Added

- A banner for <all> & sundry, which takes so many words to describe that they
  go over two lines.

### Fixed

- `corvane` ends.

## [1.0.0] - 2026-12-01

The first release.
)";

constexpr const char* unreleased = R"(# Changelog

## [Unreleased]

### Added

- Something new.

## [1.0.0] - 2026-12-01

- The beginning.
)";

/// Packaging/linux/changes, which writes the changelogs of packages.
class ChangesTest : public testing::Test {
  protected:
    test::Outcome changes(const std::string& kind, const std::string& text, const std::string& version,
                          const std::vector<std::string>& further = {}) {
        const fs::path file = scratch / "CHANGELOG.md";
        test::writeFile(file, text);
        std::vector<std::string> arguments{kind, file.string(), version};
        arguments.insert(arguments.end(), further.begin(), further.end());
        return test::runScript(CORVANE_SOURCES "/Packaging/linux/changes", arguments,
                               {{"PATH", "/usr/bin:/bin"},
                                {"TMPDIR", scratch.path().string()},
                                {"SOURCE_DATE_EPOCH", "1800000000"}}); // 2027-01-15 08:00 UTC
    }
    test::Outcome metainfo(const std::string& text, const std::string& version, const std::string& homepage) {
        return changes("metainfo", text, version,
                       {CORVANE_SOURCES "/Packaging/linux/metainfo.xml.in", homepage});
    }

    test::ScratchFolder scratch{"changes"};
};

TEST_F(ChangesTest, theListNamesTheReleasesNewestFirst) {
    EXPECT_EQ(changes("list", released, "1.1.0").output, "1.1.0 2027-02-03\n1.0.0 2026-12-01\n");
}

TEST_F(ChangesTest, unreleasedChangesBelongToTheVersionThatHasNoSectionYet) {
    EXPECT_EQ(changes("list", unreleased, "1.1.0").output, "1.1.0 2027-01-15\n1.0.0 2026-12-01\n");
    EXPECT_THAT(metainfo(unreleased, "1.1.0", "").output,
                HasSubstr(R"(<release version="1.1.0" date="2027-01-15" type="development">)"));
    EXPECT_THAT(changes("debian", unreleased, "1.1.0", {"1.1.0-1", "A <a@example.org>"}).output,
                HasSubstr("corvane (1.1.0-1) UNRELEASED; urgency=medium\n"));
}

TEST_F(ChangesTest, unreleasedChangesAreLeftOutOnceTheVersionHasASection) {
    const std::string output = metainfo(unreleased, "1.0.0", "").output;
    EXPECT_THAT(output, HasSubstr("<li>The beginning.</li>"));
    EXPECT_THAT(output, Not(HasSubstr("Something new")));
    EXPECT_THAT(output, Not(HasSubstr("development")));
}

TEST_F(ChangesTest, debiansChangelogHasAnEntryForEachRelease) {
    EXPECT_EQ(changes("debian", released, "1.1.0", {"1.1.0-1+debian12", "A Packager <a@example.org>"}).output,
              "corvane (1.1.0-1+debian12) unstable; urgency=medium\n"
              "\n"
              "  * A banner for <all> & sundry, which takes so many words to describe that\n"
              "    they go over two lines.\n"
              "  * `corvane` ends.\n"
              "\n"
              " -- A Packager <a@example.org>  Wed, 03 Feb 2027 00:00:00 +0000\n"
              "\n"
              "corvane (1.0.0-1+debian12) unstable; urgency=medium\n"
              "\n"
              "  * The first release.\n"
              "\n"
              " -- A Packager <a@example.org>  Tue, 01 Dec 2026 00:00:00 +0000\n"
              "\n");
}

TEST_F(ChangesTest, theMetainfoHasTheNotesOfEachReleaseAsElements) {
    EXPECT_THAT(metainfo(released, "1.1.0", "").output,
                HasSubstr("  <releases>\n"
                          "    <release version=\"1.1.0\" date=\"2027-02-03\" type=\"stable\">\n"
                          "      <description>\n"
                          "        <p>Added:</p>\n"
                          "        <ul>\n"
                          "          <li>A banner for &lt;all&gt; &amp; sundry, which takes so many words to "
                          "describe that they go over two lines.</li>\n"
                          "        </ul>\n"
                          "        <p>Fixed:</p>\n"
                          "        <ul>\n"
                          "          <li>corvane ends.</li>\n"
                          "        </ul>\n"
                          "      </description>\n"
                          "    </release>\n"
                          "    <release version=\"1.0.0\" date=\"2026-12-01\" type=\"stable\">\n"
                          "      <description>\n"
                          "        <p>The first release.</p>\n"
                          "      </description>\n"
                          "    </release>\n"
                          "  </releases>\n"));
}

TEST_F(ChangesTest, linksAndScreenshotsRequireTheHomepage) {
    EXPECT_THAT(metainfo(released, "1.1.0", "").output, Not(HasSubstr("http")));
    const test::Outcome linked = metainfo(released, "1.1.0", "https://example.org/corvane");
    EXPECT_THAT(linked.output, HasSubstr("<url type=\"homepage\">https://example.org/corvane</url>"));
    // Each picture is in the tree.
    const std::string start = "<image>https://example.org/corvane/raw/v1.1.0/";
    std::size_t pictures = 0;
    for (std::size_t at = linked.output.find(start); at != std::string::npos;
         at = linked.output.find(start, at)) {
        at += start.size();
        const std::string picture = linked.output.substr(at, linked.output.find('<', at) - at);
        EXPECT_TRUE(fs::exists(fs::path(CORVANE_SOURCES) / picture)) << picture;
        ++pictures;
    }
    EXPECT_EQ(pictures, 2U);
    if (std::string(CORVANE_APPSTREAMCLI).empty()) GTEST_SKIP() << "appstreamcli is not installed";
    const fs::path file = scratch / "org.corvane.Corvane.metainfo.xml";
    test::writeFile(file, linked.output);
    const test::Outcome validation = test::runScript(
        CORVANE_APPSTREAMCLI, {"validate", "--no-net", file.string()}, {{"LC_ALL", "C.UTF-8"}});
    EXPECT_EQ(validation.status, 0) << validation.output;
}

TEST_F(ChangesTest, aChangelogWithoutSectionsIsAnError) {
    EXPECT_EQ(changes("list", "# Changelog\n", "1.0.0").status, 1);
    EXPECT_EQ(changes("poem", released, "1.1.0").status, 2);
}

} // namespace
} // namespace corvane
