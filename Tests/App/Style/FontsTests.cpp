#include "Style/Fonts.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace corvane {
namespace {

class FontsTest : public testing::Test {
  protected:
    ~FontsTest() override { QApplication::setFont(before_); }

    const QFont before_ = QApplication::font();
};

TEST_F(FontsTest, fontsHaveTheirSizesInPixels) {
    EXPECT_EQ(fonts::system(15).pixelSize(), 15);
    EXPECT_EQ(fonts::monospaced(13).pixelSize(), 13);
    EXPECT_EQ(fonts::system(15).weight(), QFont::Normal);
}

TEST_F(FontsTest, aFontWithAStyleNameStillGetsItsWeight) {
    QFont named = before_;
    named.setStyleName(QStringLiteral("Regular"));
    QApplication::setFont(named);
    ASSERT_EQ(QApplication::font().styleName().toStdString(), "Regular");
    const QFont semibold = fonts::system(15, QFont::DemiBold);
    EXPECT_EQ(QFontInfo(semibold).weight(), QFont::DemiBold);
    EXPECT_EQ(QFontInfo(semibold).family(), QFontInfo(before_).family());
    // The letters as drawn: heavier ones are wider.
    const QString text = QStringLiteral("Claude is waiting");
    EXPECT_GT(QFontMetricsF(semibold).horizontalAdvance(text),
              QFontMetricsF(fonts::system(15)).horizontalAdvance(text) + 1);
}

TEST_F(FontsTest, aNarrowingFontBecomesSmallerAndThenCloser) {
    const QString text = QStringLiteral("Claude is waiting");
    const std::vector<QFont> all = fonts::narrowing(fonts::system(15, QFont::DemiBold), 13.9);
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[0], fonts::system(15, QFont::DemiBold));
    const int sizes[] = {15, 14, 13, 13, 13};
    const double spacings[] = {0, 0, 0, -0.26, -0.52};
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].pixelSize(), sizes[i]);
        EXPECT_NEAR(all[i].letterSpacing(), spacings[i], 0.02);
        EXPECT_EQ(all[i].weight(), QFont::DemiBold);
        if (i > 0) {
            EXPECT_LT(QFontMetricsF(all[i]).horizontalAdvance(text),
                      QFontMetricsF(all[i - 1]).horizontalAdvance(text));
        }
    }
}

TEST_F(FontsTest, aFontSmallerThanTheSmallestOnlyBecomesCloser) {
    const std::vector<QFont> all = fonts::narrowing(fonts::system(11), 13);
    ASSERT_EQ(all.size(), 3U);
    for (const QFont& font : all)
        EXPECT_EQ(font.pixelSize(), 11);
}

} // namespace
} // namespace corvane
