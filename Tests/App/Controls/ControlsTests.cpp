#include "App/Support/Pictures.h"
#include "App/Support/Waiting.h"
#include "Controls/Controls.h"
#include "Controls/FocusRing.h"
#include "Controls/Paragraph.h"
#include "Style/Tokens.h"

#include <QAbstractItemView>
#include <QFocusFrame>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace corvane {
namespace {

class ControlsTest : public testing::Test {
  protected:
    ControlsTest() { window_.resize(300, 120); }

    void show() {
        window_.show();
        window_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_, test::longestWait));
        // The toolkit gives the first control the focus when a window is shown.
        window_.setFocus();
    }

    template <typename Control, typename... Arguments>
    Control* add(Arguments&&... arguments) {
        auto* const control = new Control(std::forward<Arguments>(arguments)..., &window_);
        control->setGeometry(QRect(QPoint(40, 40), control->sizeHint()));
        return control;
    }

    static bool hasRing(const QWidget* control) { return control->findChild<FocusRing*>()->isShown(); }

    [[nodiscard]] QColor pixel(QPoint position, ColorScheme scheme = ColorScheme::light) {
        return test::pictureOf(window_, scheme, 1).pixelColor(position);
    }

    bool motionIsReduced_ = false;
    ReduceMotion reduceMotion_ = [this] { return motionIsReduced_; };
    QWidget window_;
};

TEST_F(ControlsTest, tabShowsTheRingAndAClickHidesIt) {
    auto* const button = add<BorderedButton>(QStringLiteral("Done"));
    show();
    EXPECT_FALSE(hasRing(button));
    QTest::keyClick(&window_, Qt::Key_Tab);
    EXPECT_TRUE(button->hasFocus());
    EXPECT_TRUE(hasRing(button));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(hasRing(button));
}

TEST_F(ControlsTest, aClickAnywhereHidesTheRingUntilTheNextKey) {
    auto* const toggle = add<Switch>(QStringLiteral("Play sounds"), reduceMotion_);
    show();
    QTest::keyClick(&window_, Qt::Key_Tab);
    ASSERT_TRUE(hasRing(toggle));
    QTest::mouseClick(&window_, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_TRUE(toggle->hasFocus());
    EXPECT_FALSE(hasRing(toggle));
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Escape})
        QTest::keyClick(toggle, key);
    QTest::keyClick(toggle, Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(hasRing(toggle));
    QTest::keyClick(toggle, Qt::Key_Space);
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_TRUE(hasRing(toggle));
}

/// Where the ink begins, and the top of the first letter.
QPoint firstInk(const QImage& picture) {
    QPoint first(-1, picture.height());
    for (int x = 0; x < picture.width() && (first.x() < 0 || x < first.x() + 4); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixelColor(x, y).lightness() > 128) continue;
            if (first.x() < 0) first.setX(x);
            first.setY(std::min(first.y(), y));
        }
    }
    return first;
}

TEST_F(ControlsTest, anEnglishParagraphKeepsItsFullStopAtItsEndInARightToLeftInterface) {
    Paragraph::Style style;
    style.font = window_.font();
    Paragraph paragraph(QStringLiteral("Taps you when it needs you."), style, nullptr);
    paragraph.resize(paragraph.sizeHint());
    const QPoint leftToRight = firstInk(test::pictureOf(paragraph, ColorScheme::light, 1));
    paragraph.setLayoutDirection(Qt::RightToLeft);
    const QPoint rightToLeft = firstInk(test::pictureOf(paragraph, ColorScheme::light, 1));
    EXPECT_NEAR(rightToLeft.x(), leftToRight.x(), 1);
    EXPECT_EQ(rightToLeft.y(), leftToRight.y()) << "a full stop is lower";
    // It still begins at the layout's leading edge.
    paragraph.resize(paragraph.width() + 50, paragraph.height());
    EXPECT_NEAR(firstInk(test::pictureOf(paragraph, ColorScheme::light, 1)).x(), leftToRight.x() + 50, 1);
}

TEST_F(ControlsTest, aButtonsEllipsisStaysAtItsEndInARightToLeftInterface) {
    auto* const button = add<BorderedButton>(QStringLiteral("Settings…"));
    const QImage leftToRight = test::pictureOf(*button, ColorScheme::light, 1);
    button->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(test::pictureOf(*button, ColorScheme::light, 1), leftToRight);
}

TEST_F(ControlsTest, aClickAloneGivesNoFocusAndShowsNoRing) {
    auto* const button = add<BorderedButton>(QStringLiteral("Done"));
    show();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(button->hasFocus());
    EXPECT_FALSE(hasRing(button));
}

TEST_F(ControlsTest, theRingIsOutsideItsButtonAndFollowsIt) {
    auto* const button = add<PrimaryButton>(QStringLiteral("Connect"), QString());
    show();
    button->setFocus(Qt::TabFocusReason);
    const QColor ring = Tokens::primary.color(ColorScheme::light);
    const QColor backdrop = Tokens::background.color(ColorScheme::light);
    const int middle = 40 + button->height() / 2;
    for (const int left : {40, 60}) {
        button->move(left, 40);
        EXPECT_EQ(pixel({left - 5, middle}), backdrop);
        EXPECT_EQ(pixel({left - 4, middle}), ring);
        EXPECT_EQ(pixel({left - 3, middle}), ring);
        EXPECT_EQ(pixel({left - 2, middle}), backdrop);
        EXPECT_EQ(pixel({left - 1, middle}), backdrop);
        EXPECT_EQ(pixel({left, middle}), ring);
    }
}

TEST_F(ControlsTest, theRingMovesWithTheFocusAndIsHiddenWithTheControl) {
    auto* const first = add<LinkButton>(QStringLiteral("Website"), 13);
    auto* const second = add<LinkButton>(QStringLiteral("Contact"), 13);
    show();
    first->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(hasRing(first));
    QTest::keyClick(first, Qt::Key_Right);
    EXPECT_FALSE(hasRing(first));
    EXPECT_TRUE(hasRing(second));
    delete second;
    for (auto* const frame : window_.findChildren<QFocusFrame*>())
        EXPECT_FALSE(frame->isVisible());
}

TEST_F(ControlsTest, buttonsShowTheirStates) {
    auto* const button = add<BorderedButton>(QStringLiteral("Done"));
    const QPoint inside(46, 54);
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        button->setDown(false);
        EXPECT_EQ(pixel(inside, scheme), Tokens::surface.color(scheme));
        EXPECT_EQ(pixel({40, 54}, scheme), Tokens::controlBorder(scheme));
        button->setDown(true);
        EXPECT_EQ(pixel(inside, scheme), Tokens::pressedFill(scheme));
    }
    button->setDown(false);
    button->setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(pixel(inside), Tokens::hoverFill(ColorScheme::light));
    button->setEnabled(false);
    const QColor faded = Tokens::mix(Tokens::controlBorder(ColorScheme::light),
                                     Tokens::background.color(ColorScheme::light), Tokens::disabledOpacity);
    EXPECT_NEAR(pixel({40, 54}).red(), faded.red(), 1);
}

TEST_F(ControlsTest, controlsAre28HighAndClickAreasAtLeast24) {
    EXPECT_EQ(add<BorderedButton>(QStringLiteral("Done"))->sizeHint().height(), 28);
    EXPECT_EQ(add<PrimaryButton>(QStringLiteral("Connect"), QString())->sizeHint().height(), 28);
    EXPECT_EQ(add<Picker>(QStringLiteral("Sound"), QStringList{QStringLiteral("Glass")})->sizeHint(),
              QSize(132, 28));
    for (const int size : {11, 13}) {
        const QSize link = add<LinkButton>(QStringLiteral("Contact"), size)->sizeHint();
        EXPECT_GE(link.height(), 24);
        EXPECT_GE(link.width(), 24);
    }
    const QSize control = add<Switch>(QStringLiteral("Sounds"), reduceMotion_)->sizeHint();
    EXPECT_GE(control.height(), 24);
}

TEST_F(ControlsTest, aLinkIsUnderlinedUnderThePointerOnly) {
    auto* const link = add<LinkButton>(QStringLiteral("Contact"), 13);
    const QRect content = link->contentRect();
    const int line = content.top() + QFontMetrics(link->font()).ascent() + 2;
    const QColor primary = Tokens::primary.color(ColorScheme::light);
    const auto isUnderlined = [&] {
        return pixel({content.left(), line}) == primary && pixel({content.right(), line}) == primary;
    };
    EXPECT_FALSE(isUnderlined());
    link->setAttribute(Qt::WA_UnderMouse);
    EXPECT_TRUE(isUnderlined());
}

TEST_F(ControlsTest, aHiddenSwitchIsNotAnimated) {
    Switch control(QStringLiteral("Sounds"), reduceMotion_, nullptr);
    EXPECT_EQ(control.position(), 0);
    control.setChecked(true);
    EXPECT_EQ(control.position(), 1);
}

TEST_F(ControlsTest, theKnobIsAnimatedUnlessMotionIsReduced) {
    auto* const control = add<Switch>(QStringLiteral("Sounds"), reduceMotion_);
    show();
    control->click();
    EXPECT_TRUE(control->isChecked());
    auto* const animation = control->findChild<QVariantAnimation*>();
    ASSERT_NE(animation, nullptr);
    EXPECT_EQ(animation->state(), QAbstractAnimation::Running);
    EXPECT_EQ(animation->duration(), 120);
    EXPECT_LT(control->position(), 1);
    animation->setCurrentTime(120);
    EXPECT_EQ(control->position(), 1);

    motionIsReduced_ = true;
    control->click();
    EXPECT_EQ(control->position(), 0);
    EXPECT_EQ(animation->state(), QAbstractAnimation::Stopped);
}

TEST_F(ControlsTest, aSwitchHasItsColoursAndItsKnobMirrors) {
    auto* const control = add<Switch>(QStringLiteral("Sounds"), reduceMotion_);
    const QRect track = control->contentRect();
    EXPECT_EQ(track.size(), QSize(36, 20));
    const QPoint left = track.topLeft() + QPoint(10, 10);
    const QPoint right = track.topLeft() + QPoint(26, 10);
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        control->setChecked(false);
        EXPECT_EQ(pixel(left, scheme), Tokens::switchOffKnob(scheme));
        EXPECT_EQ(pixel(right, scheme), Tokens::switchOff(scheme));
        control->setChecked(true);
        EXPECT_EQ(pixel(left, scheme), Tokens::primary.color(scheme));
        EXPECT_EQ(pixel(right, scheme), Tokens::onPrimary.color(scheme));
    }
    control->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(pixel(left), Tokens::onPrimary.color(ColorScheme::light));
}

TEST_F(ControlsTest, thePickerOpensByKeyboardAndReportsOnlyTheUsersChoice) {
    auto* const picker =
        add<Picker>(QStringLiteral("Sound"), QStringList{QStringLiteral("Glass"), QStringLiteral("Ping")});
    const QSignalSpy chosen(picker, &QComboBox::activated);
    picker->setCurrentIndex(1);
    picker->setCurrentIndex(-1);
    EXPECT_TRUE(chosen.isEmpty());
    EXPECT_TRUE(picker->currentText().isEmpty());

    show();
    picker->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(hasRing(picker));
    QTest::keyClick(picker, Qt::Key_Return);
    EXPECT_TRUE(picker->view()->isVisible());
    picker->hidePopup();
    QTest::keyClick(picker, Qt::Key_Down);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(picker->currentText().toStdString(), "Glass");
}

TEST_F(ControlsTest, theWheelChangesNoPicker) {
    auto* const picker =
        add<Picker>(QStringLiteral("Sound"), QStringList{QStringLiteral("Glass"), QStringLiteral("Ping")});
    picker->setCurrentIndex(0);
    show();
    QWheelEvent event(QPointF(5, 5), picker->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(picker, &event);
    EXPECT_EQ(picker->currentIndex(), 0);
}

TEST_F(ControlsTest, aPickerGrowsWithItsLongestChoice) {
    const QString longest(40, QLatin1Char('m'));
    auto* const picker = add<Picker>(QStringLiteral("Sound"), QStringList{longest});
    EXPECT_GE(picker->sizeHint().width(), QFontMetrics(picker->font()).horizontalAdvance(longest) + 30);
}

} // namespace
} // namespace corvane
