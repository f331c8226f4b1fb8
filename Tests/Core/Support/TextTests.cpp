#include "Support/Text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {
namespace {

using namespace std::string_view_literals;

TEST(TrimmingSpacesAndTabs, removesNothingElse) {
    EXPECT_EQ(text::trimmingSpacesAndTabs(" \t a b \t "), "a b");
    EXPECT_EQ(text::trimmingSpacesAndTabs(" \ra\n "), "\ra\n");
    EXPECT_EQ(text::trimmingSpacesAndTabs("\u00A0a\u00A0"), "\u00A0a\u00A0");
    EXPECT_EQ(text::trimmingSpacesAndTabs("\0 a"sv), "\0 a"sv);
    EXPECT_EQ(text::trimmingSpacesAndTabs("a"), "a");
    EXPECT_EQ(text::trimmingSpacesAndTabs(" \t"), "");
    EXPECT_EQ(text::trimmingSpacesAndTabs(""), "");
    EXPECT_EQ(text::trimmingSpacesAndTabs({}), "");
}

TEST(TrimmingWhitespace, removesEveryUnicodeWhiteSpaceCharacter) {
    for (const std::string space :
         {"\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
          "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
          "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
        EXPECT_EQ(text::trimmingWhitespace(space + "a" + space + "b" + space + space), "a" + space + "b")
            << space;
        EXPECT_EQ(text::trimmingWhitespace(space), "");
    }
}

TEST(TrimmingWhitespace, removesWhiteSpaceOfBothKindsInAnyOrder) {
    EXPECT_EQ(text::trimmingWhitespace(" \u2003 a \u2003 "), "a");
    EXPECT_EQ(text::trimmingWhitespace(std::string(100'000, ' ')), "");
    EXPECT_EQ(text::trimmingWhitespace(std::string(100'000, '\n') + "a"), "a");
}

TEST(TrimmingWhitespace, keepsWhatOnlyLooksLikeWhiteSpace) {
    for (const std::string_view kept :
         {"\u200B"sv, "\uFEFF"sv, "\u2060"sv, "\u180E"sv, "\0"sv, "\x1F"sv, "\u2800"sv}) {
        EXPECT_EQ(text::trimmingWhitespace(kept), kept);
    }
}

TEST(TrimmingWhitespace, toleratesBytesThatAreNotUtf8) {
    for (const std::string_view bytes : {"\xFF"sv, "\x80"sv, "\xC2"sv, "\xE2\x80"sv, "\xA0"sv, "\x85"sv,
                                         "\xF0\x9F\x98"sv, "\xE3\x80\xE3\x80\x80\xA0"sv}) {
        EXPECT_EQ(text::trimmingWhitespace(bytes), bytes);
        EXPECT_EQ(text::trimmingWhitespace(" " + std::string(bytes) + "\n"), bytes);
    }
    // The last byte of a no-break space alone is not a space, and must not be mistaken for one after other
    // bytes.
    EXPECT_EQ(text::trimmingWhitespace("a\xA0"), "a\xA0");
    EXPECT_EQ(text::trimmingWhitespace({}), "");
}

TEST(ContainsIgnoringCase, findsTheWordAnywhereInAnyCase) {
    EXPECT_TRUE(text::containsIgnoringCase("now WaItInG for", "waiting"));
    EXPECT_TRUE(text::containsIgnoringCase("waiting", "waiting"));
    EXPECT_FALSE(text::containsIgnoringCase("waitin g", "waiting"));
    EXPECT_FALSE(text::containsIgnoringCase("", "waiting"));
    EXPECT_TRUE(text::containsIgnoringCase("anything", ""));
    EXPECT_TRUE(text::containsIgnoringCase("\0 WAITING"sv, "waiting"));
}

TEST(ContainsIgnoringCase, foldsFully) {
    EXPECT_TRUE(text::containsIgnoringCase("STRASSE", "strasse"));
    EXPECT_TRUE(text::containsIgnoringCase("Stra\u00DFe", "strasse"));
    EXPECT_TRUE(text::containsIgnoringCase("\u00C9T\u00C9", "\u00E9t\u00E9"));
    EXPECT_TRUE(text::containsIgnoringCase("\u03A3\u03A3", "\u03C3\u03C3"));
    EXPECT_TRUE(text::containsIgnoringCase("\u212Aelvin", "kelvin"));
}

TEST(ContainsIgnoringCase, isTheSameInEveryLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"C", "tr_TR.UTF-8", "lt_LT.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_TRUE(text::containsIgnoringCase("WAITING", "waiting")) << locale;
        EXPECT_FALSE(text::containsIgnoringCase("WA\u0130TING", "waiting")) << locale;
        EXPECT_FALSE(text::containsIgnoringCase("wa\u0131ting", "waiting")) << locale;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(ContainsIgnoringCase, toleratesBytesThatAreNotUtf8) {
    EXPECT_TRUE(text::containsIgnoringCase("\xFFWAITING\xE2\x80", "waiting"));
    EXPECT_FALSE(text::containsIgnoringCase("wait\xFFing", "waiting"));
}

TEST(ContainsIgnoringCase, findsTheWordAnywhereInALongText) {
    const std::string filling(10'000, 'x');
    for (const std::string_view word : {"WAITING"sv, "\u00C9T\u00C9"sv}) {
        const std::string folded = word.front() == 'W' ? "waiting" : "\u00E9t\u00E9";
        for (std::size_t before = 4'070; before < 4'110; ++before) {
            const std::string text = filling.substr(0, before) + std::string(word) + filling;
            EXPECT_TRUE(text::containsIgnoringCase(text, folded)) << before;
            EXPECT_FALSE(text::containsIgnoringCase(text, folded + "g")) << before;
        }
    }
    // A character of three bytes at every place.
    for (std::size_t before = 4'090; before < 4'100; ++before) {
        EXPECT_TRUE(text::containsIgnoringCase(filling.substr(0, before) + "\u212Aelvin", "kelvin"));
        EXPECT_FALSE(text::containsIgnoringCase(filling.substr(0, before) + "\u212Belvin", "kelvin"));
    }
    EXPECT_FALSE(text::containsIgnoringCase(std::string(20'000, '\x80'), "waiting"));
}

TEST(ContainsIgnoringCase, foldsOnlyLetters) {
    EXPECT_FALSE(text::containsIgnoringCase("@[`{", "`{`{"));
    EXPECT_TRUE(text::containsIgnoringCase("AZ@[", "az@["));
}

TEST(Beginning, endsWithAWholeCharacter) {
    EXPECT_EQ(text::beginning("abc", 2), "ab");
    EXPECT_EQ(text::beginning("abc", 3), "abc");
    EXPECT_EQ(text::beginning("abc", 9), "abc");
    EXPECT_EQ(text::beginning("a\u20ACb", 1), "a");
    EXPECT_EQ(text::beginning("a\u20ACb", 2), "a");
    EXPECT_EQ(text::beginning("a\u20ACb", 3), "a");
    EXPECT_EQ(text::beginning("a\u20ACb", 4), "a\u20AC");
    EXPECT_EQ(text::beginning("\U0001F600b", 3), "");
    EXPECT_EQ(text::beginning("", 0), "");
    EXPECT_GE(text::beginning(std::string(100, '\x80'), 50).size(), 47U) << "bytes that are not UTF-8";
}

TEST(End, beginsWithAWholeCharacter) {
    EXPECT_EQ(text::end("abc", 2), "bc");
    EXPECT_EQ(text::end("abc", 9), "abc");
    EXPECT_EQ(text::end("a\u20ACb", 1), "b");
    EXPECT_EQ(text::end("a\u20ACb", 3), "b");
    EXPECT_EQ(text::end("a\u20ACb", 4), "\u20ACb");
    EXPECT_EQ(text::end("a\U0001F600", 3), "");
    EXPECT_GE(text::end(std::string(100, '\x80'), 50).size(), 47U) << "bytes that are not UTF-8";
}

TEST(PrefixLength, countsBytesOfPlainText) {
    EXPECT_EQ(text::prefixLength("hello", 0), 0U);
    EXPECT_EQ(text::prefixLength("hello", 2), 2U);
    EXPECT_EQ(text::prefixLength("hello", 5), 5U);
    EXPECT_EQ(text::prefixLength("hello", 99), 5U);
    EXPECT_EQ(text::prefixLength("", 0), 0U);
    EXPECT_EQ(text::prefixLength("", 3), 0U);
}

TEST(PrefixLength, keepsWhatUsersSeeAsOneCharacterTogether) {
    for (const std::string_view character :
         {"\u00E9"sv,                                     // one letter with its accent
          "e\u0301"sv,                                    // a letter and its accent
          "e\u0301\u0323\u0308"sv,                        // and more of them
          "\r\n"sv,                                       // a line break
          "\U0001F600"sv,                                 // beyond the basic plane
          "\U0001F1E9\U0001F1EA"sv,                       // a flag of two letters
          "\U0001F468\u200D\U0001F469\u200D\U0001F467"sv, // a family joined
          "\U0001F9D1\U0001F3FE\u200D\U0001F680"sv,       // a coloured astronaut
          "\u2764\uFE0F"sv,                               // a heart shown in colour
          "1\uFE0F\u20E3"sv,                              // a keycap
          "\u0E19\u0E49\u0E33"sv,                         // Thai
          "\u0915\u093F"sv,                               // Devanagari
          "\u0B95\u0BCD"sv,                               // Tamil
          "\u1112\u1161\u11AB"sv}) {                      // Hangul in parts
        const std::string three = std::string(character) + std::string(character) + std::string(character);
        EXPECT_EQ(text::prefixLength(three, 1), character.size()) << character;
        EXPECT_EQ(text::prefixLength(three, 2), 2 * character.size()) << character;
        EXPECT_EQ(text::prefixLength(three, 3), three.size()) << character;
        EXPECT_EQ(text::prefixLength(three, 4), three.size()) << character;
    }
}

TEST(PrefixLength, pairsFlagsFromTheStart) {
    const std::string flags = "\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1EE"; // two flags and a letter
    EXPECT_EQ(text::prefixLength(flags, 1), 8U);
    EXPECT_EQ(text::prefixLength(flags, 2), 16U);
    EXPECT_EQ(text::prefixLength(flags, 3), 20U);
}

TEST(PrefixLength, countsEveryInvalidByteAsACharacter) {
    EXPECT_EQ(text::prefixLength("\xFF\xFE\xFD", 2), 2U);
    EXPECT_EQ(text::prefixLength("a\x80z", 2), 2U);
    EXPECT_EQ(text::prefixLength("\0\0\0"sv, 1), 1U);
}

TEST(PrefixLength, neverSplitsAMegabyteOfMarks) {
    std::string marks = "e";
    for (int i = 0; i < 500'000; ++i)
        marks += "\u0301";
    EXPECT_EQ(text::prefixLength(marks, 1), marks.size());
    EXPECT_EQ(text::prefixLength(marks + "x", 1), marks.size());
}

TEST(LastPathComponent, takesThePathAsAFilePath) {
    for (const auto& [path, component] :
         {std::pair("/Users/you/my-project", "my-project"), std::pair("/w/shop/", "shop"),
          std::pair("/w/shop//", "shop"), std::pair("shop", "shop"), std::pair("w/shop", "shop"),
          std::pair("/", "/"), std::pair("//", "//"), std::pair("", ""), std::pair("/w/..", ".."),
          std::pair("/w/.", "."), std::pair("/w/a b", "a b"), std::pair("/w/a\\b", "a\\b"),
          std::pair("/w/\u5E97", "\u5E97"), std::pair("/w/a.tar.gz", "a.tar.gz")}) {
        EXPECT_EQ(text::lastPathComponent(path), component) << path;
    }
}

TEST(IsUtf8, acceptsWholeSequencesOnly) {
    for (const std::string_view valid :
         {""sv, "a"sv, "\0"sv, "\u00E9"sv, "\u20AC"sv, "\U0010FFFF"sv, "\uFEFF"sv}) {
        EXPECT_TRUE(text::isUtf8(valid));
    }
    for (const std::string_view invalid : {"\x80"sv, "\xC3"sv, "\xE2\x82"sv, "\xF0\x9F\x98"sv, "\xC0\x80"sv,
                                           "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv, "\xFF"sv, "ok\xFE"sv}) {
        EXPECT_FALSE(text::isUtf8(invalid));
    }
    EXPECT_TRUE(text::isUtf8({}));
}

} // namespace
} // namespace corvane
