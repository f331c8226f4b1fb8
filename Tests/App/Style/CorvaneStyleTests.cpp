#include "App/Support/Pictures.h"
#include "Style/CorvaneStyle.h"
#include "Style/Tokens.h"

#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QTest>
#include <gtest/gtest.h>

namespace corvane {
namespace {

class ScrollBarTest : public testing::Test {
  protected:
    ScrollBarTest() {
        bar_.setStyle(&style_);
        bar_.setRange(0, 100);
        bar_.setPageStep(100);
        bar_.setGeometry(0, 0, style_.pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, nullptr), 200);
    }

    [[nodiscard]] QRect part(QStyle::SubControl part) const {
        QStyleOptionSlider option;
        option.initFrom(&bar_);
        option.orientation = Qt::Vertical;
        option.minimum = bar_.minimum();
        option.maximum = bar_.maximum();
        option.pageStep = bar_.pageStep();
        option.sliderPosition = bar_.sliderPosition();
        return style_.subControlRect(QStyle::CC_ScrollBar, &option, part, &bar_);
    }

    CorvaneStyle style_;
    QWidget window_;
    QScrollBar bar_{Qt::Vertical, &window_};
};

TEST_F(ScrollBarTest, isNothingButAThumbInItsGroove) {
    EXPECT_EQ(bar_.width(), 8);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 0, 8, 100)); // half of the content is visible
    EXPECT_EQ(part(QStyle::SC_ScrollBarSubPage).height(), 0);
    EXPECT_EQ(part(QStyle::SC_ScrollBarAddPage), QRect(0, 100, 8, 100));
    EXPECT_FALSE(part(QStyle::SC_ScrollBarAddLine).isValid());
    EXPECT_FALSE(part(QStyle::SC_ScrollBarSubLine).isValid());

    bar_.setValue(100);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 100, 8, 100));
    EXPECT_EQ(part(QStyle::SC_ScrollBarAddPage).height(), 0);
}

TEST_F(ScrollBarTest, thumbOfAVeryLongTextCanStillBeGrabbed) {
    bar_.setRange(0, 1'000'000);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 0, 8, 12));
    bar_.setValue(1'000'000);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 188, 8, 12));
}

TEST_F(ScrollBarTest, thumbIsDrawnOnTheWindowsBackground) {
    window_.resize(8, 200);
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        const QImage picture = test::pictureOf(window_, scheme, 1);
        const QColor ground = Tokens::palette(scheme).color(QPalette::Window);
        EXPECT_EQ(picture.pixelColor(5, 50), Tokens::scrollThumb(scheme));
        EXPECT_EQ(picture.pixelColor(0, 50), ground);
        EXPECT_EQ(picture.pixelColor(5, 150), ground);
        EXPECT_EQ(picture.pixelColor(5, 199), ground);
    }
}

TEST_F(ScrollBarTest, thumbIsDraggedToTheEnd) {
    window_.show();
    QTest::mousePress(&bar_, Qt::LeftButton, {}, QPoint(4, 50));
    QTest::mouseMove(&bar_, QPoint(4, 150));
    QTest::mouseRelease(&bar_, Qt::LeftButton, {}, QPoint(4, 150));
    EXPECT_EQ(bar_.value(), 100);
}

/// Drawn at 2x, where lines that are stroked rather than filled are half a pixel off.
QImage doubled(QWidget& widget, Look look) {
    widget.setPalette(Tokens::palette(look));
    widget.ensurePolished();
    return test::pictureOf(widget, look, 2);
}

TEST(CorvaneStyle, aMenuIsARoundCardWithOneEvenEdge) {
    CorvaneStyle style;
    QMenu menu;
    menu.setStyle(&style);
    menu.addAction(QStringLiteral("Quit"));
    menu.resize(menu.sizeHint());
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        menu.setPalette(Tokens::palette(scheme));
        QImage picture(menu.size() * 2, QImage::Format_RGB32);
        picture.setDevicePixelRatio(2);
        const QColor desktop = Tokens::secondary.color(scheme);
        picture.fill(desktop);
        menu.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
        const QColor surface = Tokens::surface.color(scheme);
        const int middle = picture.height() / 2;
        const int right = picture.width() - 1;
        const int bottom = picture.height() - 1;
        const QColor edge = picture.pixelColor(0, middle);
        EXPECT_NE(edge, surface);
        EXPECT_NE(edge, desktop);
        for (const int depth : {0, 1}) {
            EXPECT_EQ(picture.pixelColor(depth, middle), edge);
            EXPECT_EQ(picture.pixelColor(right - depth, middle), edge);
            EXPECT_EQ(picture.pixelColor(40, depth), edge);
            EXPECT_EQ(picture.pixelColor(40, bottom - depth), edge);
        }
        EXPECT_EQ(picture.pixelColor(2, middle), surface);
        EXPECT_EQ(picture.pixelColor(right - 2, middle), surface);
        for (const QPoint corner :
             {QPoint(2, 2), QPoint(right - 2, 2), QPoint(2, bottom - 2), QPoint(right - 2, bottom - 2)})
            EXPECT_EQ(picture.pixelColor(corner), desktop);
    }
}

TEST(CorvaneStyle, aMenuBarHasOneLineBelowItWithoutGaps) {
    CorvaneStyle style;
    QMenuBar bar;
    bar.setStyle(&style);
    bar.addMenu(QStringLiteral("&File"));
    bar.addMenu(QStringLiteral("&Window"));
    bar.resize(300, bar.sizeHint().height());
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        const QImage picture = doubled(bar, scheme);
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_EQ(picture.pixelColor(x, picture.height() - 1), Tokens::dividerOnBackground(scheme)) << x;
            ASSERT_EQ(picture.pixelColor(x, picture.height() - 2), Tokens::dividerOnBackground(scheme)) << x;
        }
        EXPECT_EQ(picture.pixelColor(0, picture.height() - 3), Tokens::background.color(scheme));
    }
}

} // namespace
} // namespace corvane
