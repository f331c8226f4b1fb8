#include "Controls/Buttons.h"
#include "Controls/Controls.h"
#include "Controls/PressGuard.h"

#include <QAbstractItemView>
#include <QGuiApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleHints>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <chrono>

namespace corvane {
namespace {

using std::chrono::milliseconds;

class PressGuardTest : public testing::Test {
  protected:
    PressGuardTest() {
        PressGuard::setSurroundings({[this] { return pointer; }, [this] { return now; }});
        window.setGeometry(100, 100, 300, 200);
        QObject::connect(&button, &QAbstractButton::clicked, &window, [this] { ++clicks; });
        button.setGeometry(20, 20, 120, 28);
    }
    ~PressGuardTest() override { PressGuard::setSurroundings({}); }
    PressGuardTest(const PressGuardTest&) = delete;
    PressGuardTest& operator=(const PressGuardTest&) = delete;

    /// How many presses of one click take effect.
    int click() {
        const int before = clicks;
        QTest::mouseClick(&button, Qt::LeftButton);
        return clicks - before;
    }

    static constexpr QPoint onButton{180, 134};
    static constexpr QPoint elsewhere{500, 500};
    const milliseconds interval{QGuiApplication::styleHints()->mouseDoubleClickInterval()};

    QPoint pointer = onButton;
    milliseconds now{1000};
    int clicks = 0;
    QWidget window;
    PrimaryButton button{QStringLiteral("Connect"), {}, &window};
};

TEST_F(PressGuardTest, aControlThatAppearsUnderThePointerIgnoresPressesForTheDoubleClickInterval) {
    window.show();
    EXPECT_EQ(click(), 0);
    now += interval - milliseconds(1);
    EXPECT_EQ(click(), 0);
    now += milliseconds(1);
    EXPECT_EQ(click(), 1);
}

TEST_F(PressGuardTest, theSecondPressOfADoubleClickIsIgnoredToo) {
    window.show();
    QTest::mouseDClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 0);
}

TEST_F(PressGuardTest, aControlToWhichTheUserMovesThePointerTakesPressesAtOnce) {
    pointer = elsewhere;
    window.show();
    pointer = onButton;
    EXPECT_EQ(click(), 1);
}

TEST_F(PressGuardTest, aControlThatMovesUnderThePointerIsGuardedAgain) {
    button.move(20, 100);
    window.show();
    now += interval;
    button.move(20, 20);
    EXPECT_EQ(click(), 0);
    now += interval;
    EXPECT_EQ(click(), 1);
}

TEST_F(PressGuardTest, aWindowThatMovesItsControlUnderThePointerCountsToo) {
    window.move(100, 300);
    window.show();
    now += interval;
    window.move(100, 100);
    EXPECT_EQ(click(), 0);
}

TEST_F(PressGuardTest, aControlThatStaysUnderThePointerIsNotGuardedAgain) {
    window.show();
    now += interval;
    window.move(102, 100);
    EXPECT_EQ(click(), 1);
}

TEST_F(PressGuardTest, aControlThatReplacesAnotherIsGuarded) {
    BorderedButton remove(QStringLiteral("Remove"), &window);
    remove.setGeometry(button.geometry());
    remove.hide();
    pointer = elsewhere;
    window.show();
    pointer = onButton;
    int removals = 0;
    QObject::connect(&remove, &QAbstractButton::clicked, &window, [&] { ++removals; });
    QObject::connect(&button, &QAbstractButton::clicked, &window, [&] {
        remove.show();
        button.hide();
    });
    EXPECT_EQ(click(), 1);
    now += milliseconds(80);
    QTest::mouseClick(&remove, Qt::LeftButton);
    EXPECT_EQ(removals, 0);
    now += interval;
    QTest::mouseClick(&remove, Qt::LeftButton);
    EXPECT_EQ(removals, 1);
}

TEST_F(PressGuardTest, theKeyboardAndAssistiveTechnologyPressAtAnyTime) {
    window.show();
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    button.click(); // what a press by assistive technology does
    EXPECT_EQ(clicks, 3);
}

TEST_F(PressGuardTest, aControlScrolledUnderThePointerIsNotGuarded) {
    QScrollArea area;
    area.setGeometry(100, 100, 300, 100);
    auto* const content = new QWidget;
    content->resize(280, 400);
    auto* const row = new PrimaryButton(QStringLiteral("Row"), {}, content);
    row->setGeometry(20, 120, 120, 28);
    area.setWidget(content);
    int presses = 0;
    QObject::connect(row, &QAbstractButton::clicked, &area, [&] { ++presses; });
    area.show();
    area.verticalScrollBar()->setValue(100);
    ASSERT_TRUE(QRect(row->mapToGlobal(QPoint()), row->size()).contains(onButton));
    QTest::mouseClick(row, Qt::LeftButton);
    EXPECT_EQ(presses, 1);
}

TEST_F(PressGuardTest, aGuardedPickerDoesNotOpen) {
    Picker picker(QStringLiteral("Sound"), {QStringLiteral("None"), QStringLiteral("Glass")}, &window);
    picker.setGeometry(button.geometry());
    window.show();
    QTest::mousePress(&picker, Qt::LeftButton);
    EXPECT_FALSE(picker.view()->isVisible());
}

} // namespace
} // namespace corvane
