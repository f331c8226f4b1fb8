#include "Controls/Elision.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace corvane {
namespace {

// Every byte that begins a code point is one wide.
double codePoints(std::string_view text) {
    double count = 0;
    for (const char byte : text)
        count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
    return count;
}

TEST(Elision, aTextThatFitsStaysWhole) {
    EXPECT_EQ(text::elidingMiddle("shop", 4, codePoints), "shop");
    EXPECT_EQ(text::elidingMiddle("", 0, codePoints), "");
}

TEST(Elision, aWiderTextIsElidedInTheMiddle) {
    EXPECT_EQ(text::elidingMiddle("abcdefgh", 7, codePoints), "abc…fgh");
    EXPECT_EQ(text::elidingMiddle("abcdefgh", 6, codePoints), "abc…gh");
    EXPECT_EQ(text::elidingMiddle("abcdefgh", 2, codePoints), "a…");
}

TEST(Elision, onlyTheEllipsisIsLeftIfNothingFits) {
    EXPECT_EQ(text::elidingMiddle("abcdefgh", 1, codePoints), "…");
    EXPECT_EQ(text::elidingMiddle("abcdefgh", 0, codePoints), "…");
}

TEST(Elision, charactersAreNeverSplit) {
    // Flags of two code points each, and a family of seven.
    EXPECT_EQ(text::elidingMiddle("🇩🇪🇫🇷🇬🇧🇯🇵", 6, codePoints), "🇩🇪…🇯🇵");
    EXPECT_EQ(text::elidingMiddle("👨‍👩‍👧‍👦abcdef", 5, codePoints), "…");
    // Letters with combining accents.
    EXPECT_EQ(text::elidingMiddle("a\u0301bc\u0301de\u0301f\u0301", 7, codePoints), "a\u0301b…f\u0301");
}

TEST(Elision, bothEndsOfAVeryLongTextAreShown) {
    const std::string head(2'000'000, 'a');
    const std::string tail(2'000'000, 'z');
    EXPECT_EQ(text::elidingMiddle(head + tail, 5, codePoints), "aa…zz");
}

} // namespace
} // namespace corvane
