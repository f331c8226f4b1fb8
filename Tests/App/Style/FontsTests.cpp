#include "Style/Fonts.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <gtest/gtest.h>

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

} // namespace
} // namespace corvane
