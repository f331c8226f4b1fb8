// Where no entry of ours is added or removed, every byte of the agents' files stays.

#include "Agents/AgentKind.h"
#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace corvane {
namespace {

std::string install(std::string_view current) {
    return ClaudeSettingsEditor::install(current, R"("/Users/ada/Corvane/bin/corvane-hook" claude)");
}

TEST(ClaudeSettingsEditor, uninstallReturnsDocumentsWithoutOwnEntriesByteForByte) {
    for (const std::string_view before :
         {"", " \n", "{}", "{ \"b\" : 1,\r\n\"a\":[ ] }", R"({"hooks":5})", R"({"hooks":null })",
          R"({"hooks":[{"command":"Corvane/bin/corvane-hook"}]})", "\xEF\xBB\xBF{\"a\" : 1}", "\xEF\xBB\xBF",
          R"({"hooks":{},"hooks":1 })", R"({"z":1, "hooks" : {}, "a":"\ud83d"})",
          R"({"hooks":{"Foreign":[],"Stop":[{"hooks":[{"type":"command","command":"say done"}]}]},"a":1})",
          R"({"hooks":{"Stop":[{"hooks":[]},{"command":"Corvane/bin/corvane-hook"}]}})"}) {
        EXPECT_EQ(ClaudeSettingsEditor::uninstall(before), before);
    }
}

TEST(ClaudeSettingsEditor, installReturnsACompleteDocumentByteForByte) {
    const std::string compact = [] {
        std::string text = install(R"({"model":"opus","env":{}})");
        std::erase(text, '\n');
        text.insert(1, R"( "z" : 1.50,)");
        return text;
    }();
    EXPECT_EQ(install(compact), compact);
    EXPECT_EQ(install("\xEF\xBB\xBF" + compact), "\xEF\xBB\xBF" + compact);

    std::string oneMissing = compact;
    oneMissing.replace(oneMissing.find("SessionEnd"), 10, "SessionXnd");
    EXPECT_NE(install(oneMissing), oneMissing);
    std::string moved = compact;
    moved.replace(moved.find("/Users/ada"), 10, "/Users/bob");
    EXPECT_NE(install(moved), moved);
}

TEST(Codex, removingReturnsATextWithoutOwnLinesByteForByte) {
    const auto removed = [](std::string_view text) { return AgentKind::codex.descriptor().uninstall(text); };
    const std::string ownLine = "notify = [\"/h/Corvane/bin/corvane-hook\", \"codex\"]\n";
    for (const std::string_view text :
         {"", "\n", "\n\n\n", "\n\na = 1\n", "\xEF\xBB\xBF\n# Corvane\n", "\n # Corvane: tells Corvane\n"}) {
        EXPECT_FALSE(CodexConfigEditor::holdsOwnLines(text)) << text;
        EXPECT_EQ(removed(text), text);
    }
    EXPECT_TRUE(CodexConfigEditor::holdsOwnLines("\n[t]\n" + ownLine));
    EXPECT_EQ(removed("\n[t]\n" + ownLine), "[t]\n");
    const std::string comment(CodexConfigEditor::comment);
    EXPECT_TRUE(CodexConfigEditor::holdsOwnLines("\xEF\xBB\xBF" + comment));
    EXPECT_EQ(removed("\n" + comment + "\na = 1"), "a = 1");
}

} // namespace
} // namespace corvane
