#include "Platform/Linux/Shadow.h"
#include "Platform/Linux/WindowShadow.h"
#include "Style/Tokens.h"

#include <QImage>
#include <QPainter>
#include <QWidget>
#include <gtest/gtest.h>

namespace corvane {
namespace {

QPainterPath outline(QSize card) {
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(), QSizeF(card)), 12, 12);
    return path;
}

class LinuxWindowShadowTest : public testing::Test {
  protected:
    [[nodiscard]] QImage painted(QSize card) {
        QImage image(card.grownBy(shadow_.margins()), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        shadow_.paint(painter, window_, outline(card), card);
        return image.convertToFormat(QImage::Format_Alpha8);
    }

    [[nodiscard]] static QImage expected(QSize card, ColorScheme scheme) {
        return cardShadow(outline(card), card, scheme, 1);
    }

    void use(ColorScheme scheme) { window_.setPalette(Tokens::palette({scheme, Contrast::normal})); }

    QWidget window_;
    LinuxWindowShadow shadow_;
};

TEST_F(LinuxWindowShadowTest, hasItsMarginsWhereWindowsAreBlended) {
    ASSERT_TRUE(shadow_.isBlended());
    EXPECT_EQ(shadow_.margins(), shadowMargins);
}

TEST_F(LinuxWindowShadowTest, isThatOfTheCurrentCardNotOfThePreviousOne) {
    use(ColorScheme::light);
    EXPECT_EQ(painted({90, 60}), expected({90, 60}, ColorScheme::light));
    EXPECT_EQ(painted({90, 80}), expected({90, 80}, ColorScheme::light));
    use(ColorScheme::dark);
    EXPECT_EQ(painted({90, 80}), expected({90, 80}, ColorScheme::dark));
    EXPECT_NE(expected({90, 80}, ColorScheme::light), expected({90, 80}, ColorScheme::dark));
}

} // namespace
} // namespace corvane
