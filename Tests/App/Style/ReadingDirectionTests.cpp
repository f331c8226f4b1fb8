#include "Style/ReadingDirection.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ReadingDirection, isThatOfTheFirstStrongLetter) {
    for (const Qt::LayoutDirection layout : {Qt::LeftToRight, Qt::RightToLeft}) {
        EXPECT_EQ(readingDirection(QStringLiteral("… 12 Settings…"), layout), Qt::LeftToRight);
        EXPECT_EQ(readingDirection(QStringLiteral("12: שלום world"), layout), Qt::RightToLeft);
        EXPECT_EQ(readingDirection(QStringLiteral("متجر"), layout), Qt::RightToLeft);
        EXPECT_EQ(readingDirection(QStringLiteral("\U0001E900"), layout), Qt::RightToLeft) << "Adlam";
    }
}

TEST(ReadingDirection, isTheLayoutsIfThereIsNoLetter) {
    for (const Qt::LayoutDirection layout : {Qt::LeftToRight, Qt::RightToLeft}) {
        EXPECT_EQ(readingDirection({}, layout), layout);
        EXPECT_EQ(readingDirection(QStringLiteral("12 – …"), layout), layout);
    }
}

TEST(ReadingDirection, ignoresIsolatedText) {
    EXPECT_EQ(readingDirection(QStringLiteral("\u2068متجر\u2069 · Claude"), Qt::RightToLeft),
              Qt::LeftToRight);
    EXPECT_EQ(readingDirection(QStringLiteral("\u2067a\u2068b\u2069c\u2069"), Qt::RightToLeft),
              Qt::RightToLeft);
    EXPECT_EQ(readingDirection(QStringLiteral("\u2069a"), Qt::RightToLeft), Qt::LeftToRight);
}

} // namespace
} // namespace corvane
