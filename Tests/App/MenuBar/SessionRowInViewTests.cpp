#include "App/Support/DirectionMarks.h"
#include "App/Support/MenuBarSupport.h"
#include "App/Support/ToolTips.h"
#include "App/Support/Waiting.h"
#include "Controls/Labels.h"
#include "MenuBar/SessionList.h"
#include "MenuBarView.h"
#include "Style/Times.h"
#include "Style/Tokens.h"

#include <QAccessible>
#include <QImage>
#include <QLocale>
#include <QScrollBar>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace corvane {
namespace {

class SessionRowInViewTest : public testing::Test {
  protected:
    MenuBarView& view() {
        if (!view_) {
            view_ = std::make_unique<MenuBarView>(
                world.model(), MenuBarView::Actions{[] {}, [](const QUrl& /*url*/) {}, [] {}});
            view_->setPalette(Tokens::palette(ColorScheme::light));
            view_->show();
        }
        view_->resize(view_->sizeHint());
        return *view_;
    }

    test::MenuBarWorld world;

  private:
    std::unique_ptr<MenuBarView> view_;
};

TEST_F(SessionRowInViewTest, theToolTipSaysThatTheTerminalWasNotFoundLastTime) {
    world.connect();
    world.waits("w");
    SessionRow& row = *view().list().rows().front();
    EXPECT_EQ(test::toolTip(row), "");
    world.platform.applications.isFound = false;
    row.click();
    EXPECT_EQ(test::toolTip(row), "Terminal not found");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&row)->text(QAccessible::Description).toStdString(),
              "Terminal not found");
    world.platform.applications.isFound = true;
    row.click();
    EXPECT_EQ(test::toolTip(row), "");
}

TEST_F(SessionRowInViewTest, onlyTheRowThatMovesUnderThePointerIsHighlighted) {
    world.connect();
    world.waits("a", "shop");
    world.waits("b", "notes");
    MenuBarView& panel = view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel, test::longestWait));
    const auto rows = [&panel] { return panel.list().rows(); };
    ASSERT_EQ(rows().front()->session().sessionID, "b");
    // A move to where another test has left the pointer is not reported.
    for (const QPoint place : {QPoint(60, 20), QPoint(40, 20)})
        QTest::mouseMove(rows().front(), place);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().front()->underMouse(); }, test::longestWait));

    world.waits("a", "shop");
    ASSERT_EQ(rows().front()->session().sessionID, "a");
    EXPECT_TRUE(rows().front()->underMouse());
    EXPECT_FALSE(rows().back()->underMouse());
}

TEST_F(SessionRowInViewTest, aNameThatIsCutIsWholeInItsToolTipAsPlainText) {
    world.connect();
    const std::string name = "<img src=x> " + std::string(80, 'a') + " <b>&amp;<br>";
    world.runs("a", name);
    world.runs("b", "shop");
    (void)view().grab();
    for (SessionRow* const row : view().list().rows())
        EXPECT_EQ(test::toolTip(*row), row->session().sessionID == "a" ? name : "");
}

TEST_F(SessionRowInViewTest, aSnoozedSessionsRowShowsUntilWhen) {
    world.connect();
    world.waits("a", "shop");
    (void)view().grab();
    SessionRow& row = *view().list().rows().at(0);
    EXPECT_EQ(test::toolTip(row), "");
    world.model().snooze(row.session());
    const QString time = times::shortTime(world.model().now() + Seconds(300), QLocale());
    EXPECT_EQ(test::toolTip(row), "Snoozed until " + time.toStdString());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&row)->text(QAccessible::Description).toStdString(),
              "Snoozed until " + time.toStdString());
    world.pass(301);
    EXPECT_EQ(test::toolTip(row), "");
}

TEST_F(SessionRowInViewTest, anInvisibleNameLeavesNoEmptyLine) {
    world.connect();
    world.runs("a", test::rightToLeftOverride() + " ");
    (void)view().grab();
    SessionRow& row = *view().list().rows().at(0);
    const auto lines = row.findChildren<LineLabel*>();
    EXPECT_FALSE(lines.at(0)->isVisible());
    EXPECT_EQ(lines.at(1)->geometry().center().y(), row.rect().center().y());
    EXPECT_EQ(row.spokenText(), QStringLiteral("Claude, Running"));
}

TEST_F(SessionRowInViewTest, theListFadesAtTheTopTooWhileMoreIsAbove) {
    world.connect();
    for (const char* const session : {"a", "b", "c", "d", "e", "f", "g", "h"})
        world.runs(session, "HHHHHHHHHHHHHHHH");
    SessionList& list = view().list();
    const auto darkest = [&list] { // of what is drawn in the first lines
        const QImage picture = list.grab().toImage();
        int result = 255;
        for (int x = 20; x < picture.width() - 20; ++x) {
            for (int y = 0; y < 4; ++y)
                result = std::min(result, picture.pixelColor(x, y).lightness());
        }
        return result;
    };
    list.verticalScrollBar()->setValue(14); // through the first name
    EXPECT_GT(darkest(), 150);
    view().setPalette(Tokens::palette({ColorScheme::light, Contrast::high}));
    EXPECT_LT(darkest(), 60) << "not with high contrast";
}

} // namespace
} // namespace corvane
