#include "Platform/Linux/DesktopEntry.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string entry(const std::string& exec) {
    return "[Desktop Entry]\nType=Application\nExec=" + exec + "\n";
}

TEST(DesktopEntry, anArgumentIsQuotedAndEscaped) {
    EXPECT_EQ(DesktopEntry::execArgument("/usr/bin/corvane"), R"("/usr/bin/corvane")");
    EXPECT_EQ(DesktopEntry::execArgument("/opt/my apps/corvane"), R"("/opt/my apps/corvane")");
    EXPECT_EQ(DesktopEntry::execArgument("/a\"b"), R"("/a\\"b")");
    EXPECT_EQ(DesktopEntry::execArgument("/a`b$c"), R"("/a\\`b\\$c")");
    EXPECT_EQ(DesktopEntry::execArgument("/a\\b"), R"("/a\\\\b")");
    EXPECT_EQ(DesktopEntry::execArgument("/100%"), R"("/100%%")");
    EXPECT_EQ(DesktopEntry::execArgument("/a\nb"), R"("/ab")");
}

TEST(DesktopEntry, aQuotedArgumentIsReadBack) {
    for (const std::string program : {"/usr/bin/corvane", "/opt/my apps/corvane", "/a\"b", "/a`b$c", "/a\\b",
                                      "/100%", "/%f", "/ünï/c", "/a'b", "/a;b&c|d", "/\\\\s"}) {
        EXPECT_EQ(DesktopEntry::execProgram(entry(DesktopEntry::execArgument(program))), program);
    }
}

TEST(DesktopEntry, anUnquotedProgramEndsAtTheFirstSpace) {
    EXPECT_EQ(DesktopEntry::execProgram(entry("/usr/bin/corvane --flag")), "/usr/bin/corvane");
    EXPECT_EQ(DesktopEntry::execProgram(entry("corvane")), "corvane");
}

TEST(DesktopEntry, onlyTheMainGroupCounts) {
    EXPECT_EQ(DesktopEntry::execProgram("[Other]\nExec=wrong\n[Desktop Entry]\n# Exec=wrong\nExec = right\n"),
              "right");
    EXPECT_EQ(DesktopEntry::execProgram("[Desktop Entry]\nName=x\n[Desktop Action a]\nExec=wrong\n"), "");
    EXPECT_EQ(DesktopEntry::execProgram(""), "");
}

TEST(DesktopEntry, anEntryCanBeSwitchedOff) {
    EXPECT_FALSE(DesktopEntry::isDisabled(entry("x")));
    EXPECT_TRUE(DesktopEntry::isDisabled(entry("x") + "Hidden=true\n"));
    EXPECT_FALSE(DesktopEntry::isDisabled(entry("x") + "Hidden=false\n"));
    EXPECT_TRUE(DesktopEntry::isDisabled(entry("x") + "X-GNOME-Autostart-enabled=false\n"));
}

} // namespace
} // namespace corvane
