#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"
#include "Agents/HookScript.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace corvane {
namespace {

using namespace std::string_literals;

const std::string hookPath = "/Users/ada/Library/Application Support/Corvane/bin/corvane-hook";
const std::string commentLine =
    "# Corvane: tells Corvane when Codex finishes (remove in Corvane \xE2\x96\xB8 Settings)\n";
const std::string ownLine =
    "notify = [\"/Users/ada/Library/Application Support/Corvane/bin/corvane-hook\", \"codex\"]\n";
const std::string ownLines = commentLine + ownLine;

std::string install(std::optional<std::string_view> text) {
    return CodexConfigEditor::install(text, hookPath);
}

struct WholeText {
    std::string_view name;
    std::string before;
    std::string installed;
};

void PrintTo(const WholeText& text, std::ostream* out) {
    *out << text.name;
}

class CodexWholeTexts : public testing::TestWithParam<WholeText> {};

TEST_P(CodexWholeTexts, installAddsTwoLinesAndUninstallRestoresTheText) {
    const WholeText& text = GetParam();
    EXPECT_FALSE(CodexConfigEditor::isInstalled(text.before));
    EXPECT_EQ(install(text.before), text.installed);
    EXPECT_TRUE(CodexConfigEditor::isInstalled(text.installed));
    EXPECT_EQ(install(text.installed), text.installed);
    EXPECT_EQ(CodexConfigEditor::uninstall(text.installed), text.before);
    EXPECT_EQ(CodexConfigEditor::uninstall(text.before), text.before);
}

// NOLINTNEXTLINE(cert-err58-cpp)
INSTANTIATE_TEST_SUITE_P(
    Texts, CodexWholeTexts,
    testing::Values(
        WholeText{"empty", "", ownLines},
        WholeText{"oneLine", "model = \"o3\"\n", ownLines + "\nmodel = \"o3\"\n"},
        WholeText{"noLineFeedAtTheEnd", "model = \"o3\"", ownLines + "\nmodel = \"o3\""},
        WholeText{"manyLineFeedsAtTheEnd", "a = 1\n\n\n", ownLines + "\na = 1\n\n\n"},
        WholeText{"commentsSpacingAndOrder", "# mine\n\n  b=2\na\t=  1\n\n[t]\nx = [ 1,\n 2 ]\n",
                  ownLines + "\n# mine\n\n  b=2\na\t=  1\n\n[t]\nx = [ 1,\n 2 ]\n"},
        WholeText{"carriageReturns", "a = 1\r\n[t]\r\n", ownLines + "\na = 1\r\n[t]\r\n"},
        WholeText{"carriageReturnFirst", "\r\na = 1\r\n", ownLines + "\n\r\na = 1\r\n"},
        WholeText{"notifyInATable", "[tui]\nnotify = [\"x\"]\n", ownLines + "\n[tui]\nnotify = [\"x\"]\n"},
        WholeText{"notifyAfterAnIndentedTable", " \t[tui]\nnotify = 1\n",
                  ownLines + "\n \t[tui]\nnotify = 1\n"},
        WholeText{"notifyAfterAnArrayOfTables", "[[a]]\nnotify = 1\n", ownLines + "\n[[a]]\nnotify = 1\n"},
        WholeText{"commentedOut", "# notify = [\"x\"]\n#notify=1\n",
                  ownLines + "\n# notify = [\"x\"]\n#notify=1\n"},
        WholeText{"longerKeys", "notify_x = 1\nnotifyme = 2\nnotify-y=3\n",
                  ownLines + "\nnotify_x = 1\nnotifyme = 2\nnotify-y=3\n"},
        WholeText{"keyWithoutEqualsSign", "notify\nnotify [\n", ownLines + "\nnotify\nnotify [\n"},
        WholeText{"otherCase", "Notify = 1\n", ownLines + "\nNotify = 1\n"},
        WholeText{"byteOrderMark",
                  "\xEF\xBB\xBF"
                  "a = 1\n",
                  "\xEF\xBB\xBF" + ownLines + "\na = 1\n"},
        WholeText{"byteOrderMarkOnly", "\xEF\xBB\xBF", "\xEF\xBB\xBF" + ownLines},
        WholeText{"zeroByte", "a = 1\n\0b\n"s, ownLines + "\na = 1\n\0b\n"s},
        WholeText{"spacesOnly", "  ", ownLines + "\n  "}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(CodexConfigEditor, missingFileBecomesExactlyTheTwoLines) {
    EXPECT_EQ(install(std::nullopt), ownLines);
    EXPECT_EQ(CodexConfigEditor::uninstall(ownLines), "");
    EXPECT_FALSE(CodexConfigEditor::isInstalled(std::nullopt));
}

TEST(CodexConfigEditor, findsTheFirstTopLevelNotifyLineVerbatim) {
    EXPECT_EQ(CodexConfigEditor::notifyLine("a = 1\n \tnotify \t= [\"x\"]  \nnotify = 2\n"),
              " \tnotify \t= [\"x\"]  ");
    EXPECT_EQ(CodexConfigEditor::notifyLine("notify=[]"), "notify=[]");
    EXPECT_EQ(CodexConfigEditor::notifyLine("notify = 1\r\nb = 2"), "notify = 1\r");
    EXPECT_EQ(CodexConfigEditor::notifyLine("\xEF\xBB\xBFnotify = 1\n"), "notify = 1");
    EXPECT_EQ(CodexConfigEditor::notifyLine(""), std::nullopt);
    EXPECT_EQ(CodexConfigEditor::notifyLine("[t]\nnotify = 1"), std::nullopt);
    EXPECT_EQ(CodexConfigEditor::notifyLine("#notify = 1\nnotify_x = 1\nnotify.x = 1\n\"notify\" = 1"),
              std::nullopt);
    EXPECT_EQ(CodexConfigEditor::notifyLine("a = [\n[1],\n]\nnotify = 1"), std::nullopt)
        << "a line that begins with a bracket ends the search, even within a value";
}

TEST(CodexConfigEditor, aForeignNotifyLineIsNeverTouched) {
    for (const auto& [text, line] : {std::pair{"notify = [\"x\"]\n"s, "notify = [\"x\"]"s},
                                     std::pair{"a = 1\n \t notify=[\"terminal-notifier\"] \t\n[t]\n"s,
                                               "notify=[\"terminal-notifier\"]"s},
                                     std::pair{"notify = [\"x\"]\r\n"s, "notify = [\"x\"]\r"s},
                                     std::pair{commentLine + "notify = [\"x\"]\n"s, "notify = [\"x\"]"s},
                                     std::pair{"notify = 1\n" + ownLine, "notify = 1"s},
                                     std::pair{"\xEF\xBB\xBFnotify = 1"s, "notify = 1"s}}) {
        EXPECT_FALSE(CodexConfigEditor::isInstalled(text)) << text;
        try {
            static_cast<void>(install(text));
            ADD_FAILURE() << "installed into " << text;
        } catch (const ConfigEditError& error) {
            EXPECT_EQ(error, ConfigEditError::codexNotifyTaken(line)) << text;
        }
    }
}

TEST(CodexConfigEditor, anIndentedOwnLineCountsAsInstalledWhateverItsPath) {
    for (const std::string& text : {"  \tnotify = [\"/old/Corvane/bin/corvane-hook\", \"codex\"]\n"s,
                                    "a = 1\nnotify=\"Corvane/bin/corvane-hook\"\n[t]\n"s,
                                    "\xEF\xBB\xBFnotify=\"Corvane/bin/corvane-hook\""s}) {
        EXPECT_TRUE(CodexConfigEditor::isInstalled(text)) << text;
        EXPECT_EQ(install(text), text);
    }
}

TEST(CodexConfigEditor, theCommentOrAMarkerElsewhereDoesNotCountAsInstalled) {
    EXPECT_FALSE(CodexConfigEditor::isInstalled(commentLine));
    EXPECT_FALSE(CodexConfigEditor::isInstalled("x = \"Corvane/bin/corvane-hook\"\n"));
    EXPECT_FALSE(CodexConfigEditor::isInstalled("[t]\n" + ownLine));
    EXPECT_EQ(install(commentLine), ownLines + "\n" + commentLine);
}

TEST(CodexConfigEditor, quotesAndBackslashesOfThePathAreEscaped) {
    EXPECT_EQ(CodexConfigEditor::install(std::nullopt, R"(/a"b\c\"d/Corvane/bin/corvane-hook)"),
              commentLine + R"(notify = ["/a\"b\\c\\\"d/Corvane/bin/corvane-hook", "codex"])" + "\n");
}

TEST(CodexConfigEditor, uninstallRemovesMarkerLinesAndExactCommentsEverywhere) {
    EXPECT_EQ(CodexConfigEditor::uninstall("a = 1\n" + ownLines + "[t]\n" + ownLines + "b = 2\n"),
              "a = 1\n[t]\nb = 2\n");
    EXPECT_EQ(CodexConfigEditor::uninstall("[t]\nx = \"Corvane/bin/corvane-hook\" # mine\n"), "[t]\n");
    const std::string edited = " " + commentLine + commentLine.substr(0, commentLine.size() - 1) + " \n";
    EXPECT_EQ(CodexConfigEditor::uninstall(edited), edited) << "an indented or edited comment stays";
    const std::string comment = commentLine.substr(0, commentLine.size() - 1);
    EXPECT_EQ(CodexConfigEditor::uninstall(comment + "\r\n"), comment + "\r\n");
    EXPECT_EQ(CodexConfigEditor::uninstall("a = 1\n" + comment), "a = 1");
}

TEST(CodexConfigEditor, uninstallRemovesBlankLinesAtTheTopOnly) {
    EXPECT_EQ(CodexConfigEditor::uninstall("\n\n\na = 1\n\nb = 2\n\n"), "a = 1\n\nb = 2\n\n");
    EXPECT_EQ(CodexConfigEditor::uninstall(" \na = 1\n"), " \na = 1\n");
    EXPECT_EQ(CodexConfigEditor::uninstall("\r\na = 1\n"), "\r\na = 1\n");
    EXPECT_EQ(CodexConfigEditor::uninstall("\n"), "");
    EXPECT_EQ(CodexConfigEditor::uninstall("\n\n\n\n"), "");
    EXPECT_EQ(CodexConfigEditor::uninstall(""), "");
    EXPECT_EQ(CodexConfigEditor::uninstall(ownLines + "\n"), "");
    EXPECT_EQ(CodexConfigEditor::uninstall(install("\n\na = 1\n")), "a = 1\n")
        << "leading blank lines are lost";
}

} // namespace
} // namespace corvane
