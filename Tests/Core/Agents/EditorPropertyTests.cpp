#include "Core/Agents/EditorProperties.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

/// Random documents, the same in every run.
class Generator {
  public:
    explicit Generator(unsigned seed)
        : random_(seed) {}

    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    template <std::size_t count>
    std::string oneOf(const std::string_view (&choices)[count]) {
        return std::string(choices[below(count)]);
    }

    std::string space() { return oneOf({"", "", "", " ", "\n", "\t", "\r\n  "}); }

    std::string string() {
        std::string text = "\"";
        for (std::size_t i = below(6); i > 0; --i) {
            text += oneOf({"a", "Z", " ", "é", "日", "😀", "\\u0000", "\\ud83d\\ude00", "\\/", "/", "\\\"",
                           "\\\\", "\\n", "\x7F", "\\u00e9", "\\ud83d", "\\uDE00", "\\ud83dx",
                           "Corvane/bin/corvane-hook"});
        }
        return text + "\"";
    }

    std::string digits() {
        std::string text;
        for (std::size_t i = 1 + below(below(4) == 0 ? 40 : 3); i > 0; --i)
            text += static_cast<char>('0' + below(10));
        return text;
    }

    std::string number() {
        std::string text = below(3) == 0 ? "-" : "";
        text += below(3) == 0 ? "0" : static_cast<char>('1' + below(9)) + digits();
        if (below(3) == 0) text += "." + digits();
        if (below(4) == 0) text += oneOf({"e", "E"}) + oneOf({"", "+", "-"}) + digits();
        return text;
    }

    std::string value(int depth) {
        switch (below(depth > 4 ? 3 : 5)) {
        case 0:
            return number();
        case 1:
            return string();
        case 2:
            return oneOf({"true", "false", "null"});
        case 3:
            return list('[', ']', [&] { return value(depth + 1); });
        default:
            return list('{', '}', [&] { return string() + space() + ":" + space() + value(depth + 1); });
        }
    }

    /// Documents close to the structure that the editor expects, with some levels of another type.
    std::string settings() {
        return list('{', '}', [&] {
            return below(3) == 0 ? string() + ":" + value(1)
                                 : "\"hooks\":" + (below(6) == 0 ? value(1) : hooks());
        });
    }

    /// Lines of a Codex file; not always valid TOML.
    std::string config() {
        std::string text = below(6) == 0 ? "\xEF\xBB\xBF" : "";
        for (std::size_t i = below(8); i > 0; --i) {
            text += oneOf({"model = \"o3\"",
                           "# note",
                           "",
                           "  ",
                           "[tui]",
                           "[[profiles]]",
                           "[a.b]",
                           "notify = [\"x\"]",
                           "notify_x = 1",
                           "x = [\n 1,\n 2 ]",
                           "s = \"\"\"\nnotify = 1\n[t]\n\"\"\"",
                           "d = 1979-05-27",
                           "\"é\" = 1",
                           "\"ключ\" = 'значение'",
                           "notify = \"/x/Corvane/bin/corvane-hook\"",
                           "f = 1e400",
                           "n = 9_007_199_254_740_993",
                           "t = { a = 1 }",
                           "\"notify\" = 2",
                           "\t notify\t=1"});
            text += oneOf({"\n", "\n", "\r\n"});
        }
        if (below(3) == 0 && text.ends_with('\n')) text.pop_back();
        return text;
    }

    std::string mutated(std::string text) {
        for (std::size_t i = 1 + below(3); i > 0 && !text.empty(); --i) {
            const std::size_t at = below(text.size());
            switch (below(3)) {
            case 0:
                text.erase(at, 1 + below(3));
                break;
            case 1:
                text.insert(at, 1, static_cast<char>(below(256)));
                break;
            default:
                text[at] = oneOf({"\"", "\\", "{", "}", "[", "]", ",", ":", "0", "e", "\xFF"})[0];
            }
        }
        return text;
    }

  private:
    template <typename Item>
    std::string list(char open, char close, const Item& item) {
        std::string text(1, open);
        for (std::size_t i = below(4); i > 0; --i) {
            text += space() + item() + space();
            if (i > 1) text += ",";
        }
        return text + space() + close;
    }

    std::string hooks() {
        return list('{', '}', [&] {
            const std::string event = oneOf({"Notification", "Stop", "UserPromptSubmit", "PostToolUse",
                                             "SessionEnd", "PreToolUse", "Old"});
            return "\"" + event +
                   "\":" + (below(6) == 0 ? value(2) : list('[', ']', [&] { return group(); }));
        });
    }

    std::string group() {
        if (below(10) == 0) return value(3);
        return list('{', '}', [&] {
            if (below(3) == 0) return string() + ":" + value(3);
            return "\"hooks\":" + (below(8) == 0 ? value(3) : list('[', ']', [&] { return entry(); }));
        });
    }

    std::string entry() {
        if (below(12) == 0) return value(4);
        return oneOf({R"({"type":"command","command":"\"/x/Corvane/bin/corvane-hook\" claude"})",
                      R"({"type":"command","command":"say done"})", R"({"command":7})", R"({})",
                      R"({"timeout":1.50,"command":"/y/Corvane\/bin\/corvane-hook"})"});
    }

    std::mt19937 random_;
};

TEST(ClaudeSettingsEditor, keepsTheMeaningOfAnyDocument) {
    Generator generator(1);
    std::size_t readable = 0;
    for (int i = 0; i < 6'000; ++i) {
        const std::string document = generator.settings();
        ASSERT_EQ(test::checkSettings(document), std::nullopt) << document;
        if (test::plain::settings(document)) ++readable;
    }
    EXPECT_EQ(readable, 6'000U) << "the generator makes documents";
}

TEST(ClaudeSettingsEditor, refusesOrKeepsDamagedDocumentsAsAnIndependentReaderDoes) {
    Generator generator(2);
    std::size_t readable = 0;
    for (int i = 0; i < 12'000; ++i) {
        const std::string document = generator.mutated(generator.settings());
        ASSERT_EQ(test::checkSettings(document), std::nullopt) << document;
        if (test::plain::settings(document)) ++readable;
    }
    EXPECT_GT(readable, 500U);
    EXPECT_LT(readable, 11'500U);
}

TEST(CodexConfigEditor, keepsEveryByteOfAnyTextAndTheContentOfAnyTomlFile) {
    Generator generator(3);
    std::size_t toml = 0;
    for (int i = 0; i < 6'000; ++i) {
        std::string text = generator.config();
        // The TOML parser aborts the program for some texts that are not TOML.
        const bool damaged = generator.below(4) == 0;
        if (damaged) text = generator.mutated(text);
        const std::string_view path =
            generator.below(2) == 0 ? "/h/Corvane/bin/corvane-hook" : R"(/a"b\c é/Corvane/bin/corvane-hook)";
        ASSERT_EQ(test::checkCodexConfig(text, path, !damaged), std::nullopt) << text;
        if (!damaged && test::parseToml(text)) ++toml;
    }
    EXPECT_GT(toml, 1'000U) << "the generator makes valid TOML files";
}

} // namespace
} // namespace corvane
