#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/ConfigEditError.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

const std::string command = R"("/Users/ada/Library/Application Support/Corvane/bin/corvane-hook" claude)";

/// An own group as the writer lays it out below an event.
std::string ownGroup(std::string_view matcher = "",
                     std::string_view path = "/Users/ada/Library/Application Support") {
    std::string text = R"(      {
        "hooks": [
          {
            "command": "\")";
    text += path;
    text += R"(/Corvane/bin/corvane-hook\" claude",
            "type": "command"
          }
        ])";
    text += matcher;
    text += "\n      }";
    return text;
}

const std::string withMatcher = ownGroup(",\n        \"matcher\": \"\"");
const std::string withoutMatcher = ownGroup();

/// The five events, with `stopGroups` before the own group of "Stop".
std::string fiveEvents(std::string_view stopGroups = "") {
    return "    \"Notification\": [\n" + withMatcher + "\n    ],\n    \"PostToolUse\": [\n" + withMatcher +
           "\n    ],\n    \"SessionEnd\": [\n" + withoutMatcher + "\n    ],\n    \"Stop\": [\n" +
           std::string(stopGroups) + withoutMatcher + "\n    ],\n    \"UserPromptSubmit\": [\n" +
           withoutMatcher + "\n    ]\n";
}

const std::string freshDocument = "{\n  \"hooks\": {\n" + fiveEvents() + "  }\n}\n";

std::string install(std::optional<std::string_view> current) {
    return ClaudeSettingsEditor::install(current, command);
}

struct WholeFile {
    std::string_view name;
    std::string before;
    std::string installed;
    std::string uninstalled;
};

void PrintTo(const WholeFile& file, std::ostream* out) {
    *out << file.name;
}

class ClaudeWholeFiles : public testing::TestWithParam<WholeFile> {};

TEST_P(ClaudeWholeFiles, beforeAfterInstallAndAfterUninstall) {
    const WholeFile& file = GetParam();
    EXPECT_EQ(install(file.before), file.installed);
    EXPECT_EQ(install(file.installed), file.installed) << "a second install changes nothing";
    EXPECT_TRUE(ClaudeSettingsEditor::isInstalled(file.installed));
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(file.installed), file.uninstalled);
    EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(file.uninstalled));
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(file.uninstalled), file.uninstalled);
}

const std::string foreignStopGroup = R"(      {
        "hooks": [
          {
            "command": "say done",
            "type": "command"
          }
        ]
      })";

// NOLINTNEXTLINE(cert-err58-cpp)
INSTANTIATE_TEST_SUITE_P(
    Files, ClaudeWholeFiles,
    testing::Values(
        WholeFile{"empty", "", freshDocument, "{}\n"}, WholeFile{"lineFeed", "\n", freshDocument, "{}\n"},
        WholeFile{"whiteSpace", " \t\r\n  ", freshDocument, "{}\n"},
        WholeFile{"emptyObject", "{}", freshDocument, "{}\n"},
        WholeFile{"byteOrderMarkOnly", "\xEF\xBB\xBF", freshDocument, "{}\n"},
        WholeFile{"byteOrderMark", "\xEF\xBB\xBF{\"a\":1}",
                  "{\n  \"a\": 1,\n  \"hooks\": {\n" + fiveEvents() + "  }\n}\n", "{\n  \"a\": 1\n}\n"},
        WholeFile{"otherKeys",
                  R"({"model":"opus","env":{"B":"2","A":"1"},"empty":{},"list":[],"theme":null,"on":true})",
                  R"({
  "empty": {},
  "env": {
    "A": "1",
    "B": "2"
  },
)"
                  "  \"hooks\": {\n" +
                      fiveEvents() +
                      R"(  },
  "list": [],
  "model": "opus",
  "on": true,
  "theme": null
}
)",
                  R"({
  "empty": {},
  "env": {
    "A": "1",
    "B": "2"
  },
  "list": [],
  "model": "opus",
  "on": true,
  "theme": null
}
)"},
        WholeFile{"foreignGroupStaysFirst",
                  R"({"hooks":{"Stop":[{"hooks":[{"type":"command","command":"say done"}]}]}})",
                  "{\n  \"hooks\": {\n" + fiveEvents(foreignStopGroup + ",\n") + "  }\n}\n",
                  "{\n  \"hooks\": {\n    \"Stop\": [\n" + foreignStopGroup + "\n    ]\n  }\n}\n"},
        WholeFile{
            "groupOfBothIsLost",
            R"({"hooks":{"Stop":[{"hooks":[{"command":"say done"},{"command":"/x/Corvane/bin/corvane-hook"}]}]}})",
            freshDocument, "{}\n"},
        WholeFile{"foreignEventKept",
                  R"({"hooks":{"PreToolUse":[{"matcher":"Bash","hooks":[{"command":"lint"}]}]}})",
                  "{\n  \"hooks\": {\n" +
                      std::string(fiveEvents())
                          .insert(fiveEvents().find("    \"SessionEnd\""),
                                  R"(    "PreToolUse": [
      {
        "hooks": [
          {
            "command": "lint"
          }
        ],
        "matcher": "Bash"
      }
    ],
)") + "  }\n}\n",
                  R"({
  "hooks": {
    "PreToolUse": [
      {
        "hooks": [
          {
            "command": "lint"
          }
        ],
        "matcher": "Bash"
      }
    ]
  }
}
)"},
        WholeFile{"hooksOfAnotherTypeIsReplaced", R"({"hooks":[1,2]})", freshDocument, "{}\n"},
        WholeFile{"hooksNullIsReplaced", R"({"hooks":null})", freshDocument, "{}\n"},
        WholeFile{"eventOfAnotherTypeIsReplaced",
                  R"({"hooks":{"Stop":"x","SessionEnd":{"a":1},"Notification":null}})", freshDocument,
                  "{}\n"},
        WholeFile{"eventHoldingMoreThanObjectsIsReplaced", R"({"hooks":{"Stop":[{"hooks":[]},5]}})",
                  freshDocument, "{}\n"},
        WholeFile{"lastOfEqualKeysCounts", R"({"a":1,"hooks":{"Stop":[{}]},"a":2,"hooks":{}})",
                  "{\n  \"a\": 2,\n  \"hooks\": {\n" + fiveEvents() + "  }\n}\n", "{\n  \"a\": 2\n}\n"},
        WholeFile{
            "oldCommandIsReplaced",
            R"({"hooks":{"Stop":[{"hooks":[{"command":"\"/old/Corvane/bin/corvane-hook\" claude"}]}]}})",
            freshDocument, "{}\n"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ClaudeSettingsEditor, missingFileInstallsToTheSameDocumentAsAnEmptyOne) {
    EXPECT_EQ(install(std::nullopt), freshDocument);
}

TEST(ClaudeSettingsEditor, outputEndsInExactlyOneLineFeedAfterTheBrace) {
    for (const std::string_view before : {"", "{}", "{}\n\n\n", R"({"hooks":{"X":[]},"a":1})"}) {
        const std::string after = install(before);
        EXPECT_TRUE(after.ends_with("\n}\n")) << before;
        EXPECT_TRUE(ClaudeSettingsEditor::uninstall(after).ends_with("}\n")) << before;
    }
}

TEST(ClaudeSettingsEditor, aMovedHookReplacesTheOldCommandEverywhere) {
    const std::string first = install(std::nullopt);
    const std::string moved = ClaudeSettingsEditor::install(first, R"("/b/Corvane/bin/corvane-hook" claude)");
    std::string expected = first;
    const std::string_view oldPath = "/Users/ada/Library/Application Support/";
    for (std::size_t at = expected.find(oldPath); at != std::string::npos; at = expected.find(oldPath)) {
        expected.replace(at, oldPath.size(), "/b/");
    }
    EXPECT_EQ(moved, expected);
}

TEST(ClaudeSettingsEditor, commandIsWrittenWithPlainSlashes) {
    const std::string after = install("{\"url\":\"https:\\/\\/example.org\\/\"}");
    EXPECT_EQ(after.find("\\/"), std::string::npos);
    EXPECT_NE(after.find("\"https://example.org/\""), std::string::npos);
}

const std::vector<std::string>& invalidDocuments() {
    static const std::vector<std::string> documents{"[]",
                                                    "[1,2]",
                                                    "\"text\"",
                                                    "5",
                                                    "null",
                                                    "true",
                                                    "{",
                                                    "}",
                                                    "{]",
                                                    "{\"a\"}",
                                                    "{\"a\":}",
                                                    "{\"a\":1,}",
                                                    "{,}",
                                                    "{\"a\":[1,]}",
                                                    "{\"a\":[,1]}",
                                                    "{\"a\":[1 2]}",
                                                    "{\"a\" 1}",
                                                    "{a:1}",
                                                    "{'a':1}",
                                                    "{\"a\":1}}",
                                                    "{} x",
                                                    "{}{}",
                                                    "{\"a\":1} // note",
                                                    "/* note */ {}",
                                                    "{\"a\":1 /* note */}",
                                                    "# note\n{}",
                                                    "{\"a\":01}",
                                                    "{\"a\":-01}",
                                                    "{\"a\":2.}",
                                                    "{\"a\":.5}",
                                                    "{\"a\":-}",
                                                    "{\"a\":+1}",
                                                    "{\"a\":1e}",
                                                    "{\"a\":1e+}",
                                                    "{\"a\":1.e1}",
                                                    "{\"a\":0x10}",
                                                    "{\"a\":NaN}",
                                                    "{\"a\":Infinity}",
                                                    "{\"a\":-Infinity}",
                                                    "{\"a\":True}",
                                                    "{\"a\":nul}",
                                                    "{\"a\":\"\\x\"}",
                                                    "{\"a\":\"\\u12\"}",
                                                    "{\"a\":\"\\u12G4\"}",
                                                    "{\"a\":\"\\",
                                                    "{\"a\":\"",
                                                    "{\"a\":\"\t\"}",
                                                    "{\"a\":\"\n\"}",
                                                    "{\"a\":\"\x01\"}",
                                                    "{\"a\":\"\xFF\"}",
                                                    "{\"a\":\"\xC0\xAF\"}",
                                                    "{\"a\":\"\xED\xA0\x80\"}",
                                                    "{\"a\":\"\xF4\x90\x80\x80\"}",
                                                    "{\"a\":\"\xE2\x82\"}",
                                                    "{\"a\":\"\\ud800\\udc0\"}",
                                                    "\"",
                                                    "'",
                                                    "\xEF\xBB",
                                                    "{\"a\":\xC2\xA0"
                                                    "1}",
                                                    "\xEF\xBB\xBF\xEF\xBB\xBF{}",
                                                    "\xFE\xFF{}",
                                                    "\v{}",
                                                    "\f{}",
                                                    std::string("{}\0", 3),
                                                    std::string("{}\0x", 4),
                                                    std::string("\0{}", 3),
                                                    std::string("{\"a\":\"\0\"}", 9),
                                                    std::string("{\0}", 3)};
    return documents;
}

TEST(ClaudeSettingsEditor, aDocumentThatIsNoJsonObjectIsUnreadable) {
    const ConfigEditError expected = ConfigEditError::unreadable("settings.json is not valid JSON");
    for (const std::string& document : invalidDocuments()) {
        try {
            static_cast<void>(install(document));
            ADD_FAILURE() << "installed into " << document;
        } catch (const ConfigEditError& error) {
            EXPECT_EQ(error, expected) << document;
        }
        try {
            static_cast<void>(ClaudeSettingsEditor::uninstall(document));
            ADD_FAILURE() << "uninstalled from " << document;
        } catch (const ConfigEditError& error) {
            EXPECT_EQ(error, expected) << document;
        }
        EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(document)) << document;
    }
}

TEST(ClaudeSettingsEditor, anInstalledDocumentCutAnywhereIsUnreadable) {
    const std::string whole = install(R"({"a":[1.5e3,"é\n",true]})");
    for (std::size_t size = 1; size + 1 < whole.size(); ++size) {
        EXPECT_THROW(static_cast<void>(install(whole.substr(0, size))), ConfigEditError) << size;
    }
}

TEST(ClaudeSettingsEditor, foreignValuesSurviveToTheLastDigit) {
    const std::string values = R"([
    -0,
    0,
    -0.0,
    1.0,
    1.10,
    9007199254740993,
    9223372036854775807,
    9223372036854775808,
    -9223372036854775808,
    -9223372036854775809,
    18446744073709551615,
    18446744073709551616,
    123456789012345678901234567890123456789012345678901234567890,
    0.123456789012345678901234567890,
    1e400,
    -1E+400,
    1e-400,
    1.5E-99999999999999999999
  ])";
    const std::string document = "{\n  \"numbers\": " + values + "\n}\n";
    const std::string installed = install(document);
    EXPECT_NE(installed.find("  \"numbers\": " + values + "\n"), std::string::npos) << installed;
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(installed), document);
}

TEST(ClaudeSettingsEditor, numbersOfThousandsOfDigitsSurvive) {
    const std::string digits(5'000, '7');
    const std::string document =
        "{\n  \"n\": [\n    " + digits + ",\n    0." + digits + "e-" + digits + "\n  ]\n}\n";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(install(document)), document);
}

TEST(ClaudeSettingsEditor, foreignStringsSurvive) {
    const std::string before =
        R"({"":"empty key","\u0000":"\u0000\u001f\b\f\n\r\t\"\\\/","é":"\u00e9\ud83d\ude00 🦜 日本","\u2028":"\u007f"})";
    const std::string after =
        "{\n  \"\": \"empty key\",\n"
        "  \"\\u0000\": \"\\u0000\\u001f\\b\\f\\n\\r\\t\\\"\\\\/\",\n"
        "  \"\xC3\xA9\": \"\xC3\xA9\xF0\x9F\x98\x80 \xF0\x9F\xA6\x9C \xE6\x97\xA5\xE6\x9C\xAC\",\n"
        "  \"\xE2\x80\xA8\": \"\x7F\"\n}\n";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(install(before)), after);

    const std::string halves = "{\n  \"a\": \"cut \\ud83d\",\n  \"b\": {\n    \"\\udc00\": "
                               "\"\\uD800\xEE\x80\x80\"\n  }\n}\n";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(install(halves)), halves)
        << "JavaScript writes them for text that was cut inside a character";
}

TEST(ClaudeSettingsEditor, keysAreSortedByTheirBytes) {
    const std::string after = ClaudeSettingsEditor::uninstall(
        install("{\"b\":1,\"\xF0\x9F\x98\x80\":2,\"\xEF\xBF\xBD\":3,\"a\":4,\"B\":5,\"aa\":6,\"\":7}"));
    EXPECT_EQ(after,
              "{\n  \"\": 7,\n  \"B\": 5,\n  \"a\": 4,\n  \"aa\": 6,\n  \"b\": 1,\n  \"\xEF\xBF\xBD\": 3,\n"
              "  \"\xF0\x9F\x98\x80\": 2\n}\n");
}

TEST(ClaudeSettingsEditor, nestingOf1024LevelsSurvivesAndDeeperIsUnreadable) {
    const auto nested = [](std::size_t levels, char open, char close) {
        std::string text = "{\"a\":";
        for (std::size_t i = 1; i < levels; ++i)
            text += open == '{' ? "{\"k\":" : "[";
        text += '1';
        for (std::size_t i = 1; i < levels; ++i)
            text += close;
        return text + "}";
    };
    const auto compact = [](std::string text) {
        std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
        return text;
    };
    for (const auto& [open, close] : {std::pair{'{', '}'}, std::pair{'[', ']'}}) {
        const std::string deepest = nested(1'024, open, close);
        EXPECT_EQ(compact(ClaudeSettingsEditor::uninstall(install(deepest))), deepest);
        EXPECT_THROW(static_cast<void>(install(nested(1'025, open, close))), ConfigEditError);
        EXPECT_THROW(static_cast<void>(install(nested(1'000'000, open, close))), ConfigEditError);
    }
    EXPECT_THROW(static_cast<void>(install("{\"a\":" + std::string(1'000'000, '['))), ConfigEditError);
}

TEST(ClaudeSettingsEditor, groupsWithoutReadableEntriesAreForeignAndKept) {
    const std::string before =
        R"({"hooks":{"Stop":[{},{"hooks":5},{"hooks":{"command":"Corvane/bin/corvane-hook"}},)"
        R"({"hooks":[]},{"hooks":[{}]},{"hooks":[{"command":7}]},)"
        R"({"hooks":["x",{"command":"Corvane/bin/corvane-hook"}]},)"
        R"({"command":"Corvane/bin/corvane-hook"}]}})";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(before), before);
    const std::string kept =
        R"({"hooks":{"Stop":[{},{"hooks":5},{"hooks":{"command":"Corvane/bin/corvane-hook"}},)"
        R"({"hooks":[]},{"hooks":[{}]},{"hooks":[{"command":7}]},)"
        R"({"hooks":["x",{"command":"Corvane/bin/corvane-hook"}]},)"
        R"({"command":"Corvane/bin/corvane-hook"}]}})";
    std::string compact = ClaudeSettingsEditor::uninstall(install(before));
    std::erase_if(compact, [](char c) { return c == ' ' || c == '\n'; });
    EXPECT_EQ(compact, kept);
    EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(before));
}

TEST(ClaudeSettingsEditor, uninstallKeepsForeignEntriesOfAGroupThatInstallDropsWhole) {
    const std::string before =
        R"({"hooks":{"Stop":[{"matcher":"m","timeout":5,"hooks":[{"command":"say done"},)"
        R"({"command":"/x/Corvane/bin/corvane-hook"},{"type":"no command"}]}]}})";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(before), R"({
  "hooks": {
    "Stop": [
      {
        "hooks": [
          {
            "command": "say done"
          },
          {
            "type": "no command"
          }
        ],
        "matcher": "m",
        "timeout": 5
      }
    ]
  }
}
)");
    EXPECT_EQ(install(before), freshDocument);
}

TEST(ClaudeSettingsEditor, uninstallRemovesOwnEntriesUnderAnyEvent) {
    const std::string own = R"([{"hooks":[{"command":"/x/Corvane/bin/corvane-hook"}]}])";
    EXPECT_EQ(
        ClaudeSettingsEditor::uninstall(R"({"hooks":{"SubagentStop":)" + own + R"(,"Old":)" + own + "}}"),
        "{}\n");
    EXPECT_EQ(
        ClaudeSettingsEditor::uninstall(R"({"a":1,"hooks":{"SubagentStop":)" + own + R"(,"Own":"text"}})"),
        "{\n  \"a\": 1,\n  \"hooks\": {\n    \"Own\": \"text\"\n  }\n}\n");
}

TEST(ClaudeSettingsEditor, uninstallLeavesEventsThatAreNoArraysOfObjects) {
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(
                  R"({"hooks":{"A":5,"B":["x"],"C":{"d":[]},"E":[{},null],"F":null,)"
                  R"("Stop":[{"hooks":[{"command":"/x/Corvane/bin/corvane-hook"}]}]}})"),
              R"({
  "hooks": {
    "A": 5,
    "B": [
      "x"
    ],
    "C": {
      "d": []
    },
    "E": [
      {},
      null
    ],
    "F": null
  }
}
)");
}

TEST(ClaudeSettingsEditor, uninstallRemovesEmptyEventsAndAnEmptyHooksObject) {
    const std::string own = R"("Stop":[{"hooks":[{"command":"/x/Corvane/bin/corvane-hook"}]}])";
    EXPECT_EQ(ClaudeSettingsEditor::uninstall("{\"hooks\":{" + own + "}}"), "{}\n");
    EXPECT_EQ(ClaudeSettingsEditor::uninstall(R"({"hooks":{"Foreign":[],)" + own + R"(},"z":0})"),
              "{\n  \"z\": 0\n}\n");
}

TEST(ClaudeSettingsEditor, isInstalledOnlyWhenAllFiveEventsHaveAnOwnGroup) {
    const std::string whole = install(R"({"hooks":{"Stop":[{"hooks":[{"command":"say"}]}],"Other":[]}})");
    EXPECT_TRUE(ClaudeSettingsEditor::isInstalled(whole));
    for (const std::string_view event : ClaudeSettingsEditor::events) {
        std::string without = whole;
        const std::string key = "\"" + std::string(event) + "\":";
        without.replace(without.find(key), key.size(), "\"" + std::string(event) + "x\":");
        EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(without)) << event;
    }
}

TEST(ClaudeSettingsEditor, isInstalledIsFalseForEmptyContent) {
    EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(std::nullopt));
    for (const std::string_view document : {"", " ", "{}", "[]", R"({"hooks":5})", R"({"hooks":{}})",
                                            R"({"hooks":{"Notification":5,"Stop":[]}})"}) {
        EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(document)) << document;
    }
}

TEST(ClaudeSettingsEditor, isInstalledNeedsArraysOfNothingButObjects) {
    std::string document = install(std::nullopt);
    ASSERT_TRUE(ClaudeSettingsEditor::isInstalled(document));
    document.insert(document.find("\"Stop\": [") + 9, "5,");
    EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(document));
}

} // namespace
} // namespace corvane
