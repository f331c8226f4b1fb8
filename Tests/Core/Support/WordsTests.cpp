#include "Support/Words.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(Words, inEnglishAPhraseIsItsKey) {
    EXPECT_EQ(inEnglish(translatable("AlertText", "%1 finished")), "%1 finished");
}

TEST(Words, argumentsReplaceTheirPlaceholdersInAnyOrderAndNumber) {
    EXPECT_EQ(filled("%1 is waiting", {"Claude"}), "Claude is waiting");
    EXPECT_EQ(filled("%2: %1, %1", {"a", "b"}), "b: a, a");
    EXPECT_EQ(filled("", {"a"}), "");
    EXPECT_EQ(filled("nothing", {}), "nothing");
}

TEST(Words, argumentsAreInsertedVerbatim) {
    EXPECT_EQ(filled("%1 — %2", {"/home/%2/100%", "x"}), "/home/%2/100% — x");
}

TEST(Words, placeholdersWithoutAnArgumentStay) {
    EXPECT_EQ(filled("%2 %1 %9", {"a"}), "%2 a %9");
    EXPECT_EQ(filled("%0 50% %", {"a"}), "%0 50% %");
    EXPECT_EQ(filled("%%1", {"a"}), "%a");
}

} // namespace
} // namespace corvane
