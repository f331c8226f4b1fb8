#include "App/Support/MenuBarSupport.h"
#include "Controls/Divider.h"
#include "Controls/Labels.h"
#include "Controls/Paragraph.h"
#include "MenuBar/SessionList.h"
#include "MenuBarView.h"
#include "Style/Times.h"

#include <QAccessible>
#include <QApplication>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <memory>

namespace corvane {
namespace {

using test::button;

class MenuBarViewTest : public testing::Test {
  protected:
    MenuBarView& view() {
        if (!view_) {
            view_ = std::make_unique<MenuBarView>(
                world.model(), MenuBarView::Actions{[this] { ++settingsOpened; },
                                                    [this](const QUrl& url) { opened.push_back(url); },
                                                    [this] { ++quits; }});
            view_->setPalette(Tokens::palette(ColorScheme::light));
            QObject::connect(view_.get(), &MenuBarView::heightChanged, view_.get(),
                             [this] { view_->resize(view_->sizeHint()); });
            view_->resize(view_->sizeHint());
            view_->show();
            view_->activateWindow();
            QApplication::setActiveWindow(view_.get());
            view_->setFocus();
        }
        return *view_;
    }

    /// The visible texts, from top to bottom and from left to right.
    std::vector<std::string> texts() {
        std::vector<std::pair<QPoint, QString>> found;
        for (auto* const widget : view().findChildren<QWidget*>()) {
            if (!widget->isVisible()) continue;
            const QPoint place = widget->mapTo(&view(), QPoint(0, widget->height() / 2));
            if (const auto* const line = qobject_cast<LineLabel*>(widget))
                found.emplace_back(place, line->text());
            if (const auto* const text = qobject_cast<Paragraph*>(widget))
                found.emplace_back(place, text->text());
            const auto* const press = qobject_cast<QAbstractButton*>(widget);
            if (press != nullptr && !press->text().isEmpty()) found.emplace_back(place, press->text());
        }
        std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
            return std::abs(a.first.y() - b.first.y()) > 4 ? a.first.y() < b.first.y()
                                                           : a.first.x() < b.first.x();
        });
        std::vector<std::string> result;
        for (const auto& [place, text] : found)
            result.push_back(text.toStdString());
        return result;
    }

    std::vector<std::string> spoken() {
        std::vector<std::string> result;
        for (const SessionRow* const row : view().list().rows())
            result.push_back(row->spokenText().toStdString());
        return result;
    }

    void key(Qt::Key key) {
        QWidget* const target = QApplication::focusWidget();
        ASSERT_NE(target, nullptr);
        QTest::keyClick(target, key);
    }

    std::string focused() {
        const QWidget* const widget = QApplication::focusWidget();
        if (const auto* const row = qobject_cast<const SessionRow*>(widget)) return row->session().sessionID;
        const auto* const press = qobject_cast<const QAbstractButton*>(widget);
        return press != nullptr ? press->text().toStdString() : "";
    }

    test::MenuBarWorld world;
    int settingsOpened = 0;
    int quits = 0;
    std::vector<QUrl> opened;

  private:
    std::unique_ptr<MenuBarView> view_;
};

TEST_F(MenuBarViewTest, withoutAConnectedAgentItHintsToConnectOne) {
    EXPECT_EQ(texts(),
              (std::vector<std::string>{"Corvane", "Custom feature? Contact us",
                                        "Connect an agent and Corvane will tap you when it needs you.",
                                        "Connect Claude Code", "Quiet for 1 hour", "Settings…", "Quit"}));
    EXPECT_EQ(view().width(), 340);
}

TEST_F(MenuBarViewTest, withoutAConnectedAgentItHintsToConnectOneEvenWithSessions) {
    world.waits("a");
    EXPECT_NE(button(view(), "Connect Claude Code"), nullptr);
    EXPECT_TRUE(view().list().isHidden());
}

TEST_F(MenuBarViewTest, withAnAgentAndNoSessionItSaysThatNoneRun) {
    world.connect();
    EXPECT_EQ(texts(), (std::vector<std::string>{
                           "Corvane", "Custom feature? Contact us",
                           "No agents running. Start Claude Code and Corvane will tap you when it needs you.",
                           "Quiet for 1 hour", "Settings…", "Quit"}));
}

TEST_F(MenuBarViewTest, withOnlyCodexConnectedItListsToo) {
    world.connect(AgentKind::codex);
    EXPECT_EQ(button(view(), "Connect Claude Code"), nullptr);
}

TEST_F(MenuBarViewTest, listsTheSessionsInTheBoardsOrder) {
    world.connect();
    world.runs("r", "infra");
    world.codexDone("d", "site");
    world.waits("w", "notes-api");
    world.pass(3);
    EXPECT_EQ(texts(), (std::vector<std::string>{"Corvane", "Custom feature? Contact us", "notes-api",
                                                 "Claude · Waiting for you · 0:04", "infra",
                                                 "Claude · Running", "site", "Codex · Done just now",
                                                 "Quiet for 1 hour", "Settings…", "Quit"}));
    EXPECT_EQ(spoken(), (std::vector<std::string>{"notes-api, Claude, Waiting for you · 0:04",
                                                  "infra, Claude, Running", "site, Codex, Done just now"}));
}

TEST_F(MenuBarViewTest, dotShowsTheStatusByColour) {
    world.connect();
    world.runs("r");
    world.codexDone("d", "site");
    world.waits("w");
    const auto& rows = view().list().rows();
    ASSERT_EQ(rows.size(), 3U);
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        view().setPalette(Tokens::palette(scheme));
        EXPECT_EQ(rows[0]->dotColor(), Tokens::primary.color(scheme));
        EXPECT_EQ(rows[1]->dotColor(), Tokens::runningDot(scheme));
        EXPECT_EQ(rows[2]->dotColor(), Tokens::secondary.color(scheme));
        const QImage picture = view().grab().toImage();
        for (const SessionRow* const row : rows)
            EXPECT_EQ(picture.pixelColor(row->mapTo(&view(), QPoint(16, 24))), row->dotColor());
    }
}

TEST_F(MenuBarViewTest, clocksAdvanceWithTheModelAlone) {
    world.connect();
    world.waits("w");
    view();
    world.pass(40);
    EXPECT_EQ(spoken(), (std::vector<std::string>{"shop, Claude, Waiting for you · 0:41"}));
}

TEST_F(MenuBarViewTest, quietLineIsShownDuringQuietTimeAndHidesByItself) {
    world.connect();
    view();
    const int height = view().height();
    world.model().quietForAnHour();
    const QString until = times::shortTime(*world.model().prefs().quietUntil, QLocale());
    EXPECT_EQ(texts(),
              (std::vector<std::string>{
                  "Corvane", "Custom feature? Contact us",
                  "No agents running. Start Claude Code and Corvane will tap you when it needs you.",
                  "Quiet until " + until.toStdString(), "Resume", "Quiet for 1 hour", "Settings…", "Quit"}));
    EXPECT_EQ(view().height(), height + 28 + 8);
    world.pass(3599);
    EXPECT_NE(button(view(), "Resume"), nullptr);
    world.pass();
    EXPECT_EQ(button(view(), "Resume"), nullptr);
    EXPECT_EQ(view().height(), height);
}

TEST_F(MenuBarViewTest, resumeEndsTheQuiet) {
    world.connect();
    world.model().quietForAnHour();
    view();
    button(view(), "Resume")->click();
    EXPECT_EQ(world.model().prefs().quietUntil, std::nullopt);
    EXPECT_EQ(button(view(), "Resume"), nullptr);
}

TEST_F(MenuBarViewTest, shortTimeIsThatOfTheCountry) {
    const Date date(QDateTime(QDate(2026, 3, 1), QTime(14, 30, 59)).toSecsSinceEpoch(), 0);
    EXPECT_EQ(times::shortTime(date, QLocale(QLocale::German, QLocale::Germany)), QStringLiteral("14:30"));
    EXPECT_TRUE(times::shortTime(date, QLocale(QLocale::English, QLocale::UnitedStates))
                    .startsWith(QStringLiteral("2:30")));
    EXPECT_EQ(times::shortTime(date, QLocale::c()), QStringLiteral("14:30"));
}

TEST_F(MenuBarViewTest, everyButtonDoesWhatItSays) {
    QSignalSpy left(&view(), &MenuBarView::left);
    button(view(), "Connect Claude Code")->click();
    EXPECT_TRUE(world.model().connected().at(AgentKind::claude));
    EXPECT_EQ(button(view(), "Connect Claude Code"), nullptr);
    button(view(), "Quiet for 1 hour")->click();
    EXPECT_TRUE(world.model().prefs().isQuiet(world.model().now()));
    EXPECT_EQ(left.count(), 0);

    button(view(), "Settings…")->click();
    EXPECT_EQ(settingsOpened, 1);
    button(view(), "Quit")->click();
    EXPECT_EQ(quits, 1);
    button(view(), "Custom feature? Contact us")->click();
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_EQ(opened.front(), links::contact(QStringLiteral("menubar")));
    EXPECT_EQ(left.count(), 3);
}

TEST_F(MenuBarViewTest, clickOnARowDismissesTheBannerAndActivatesTheTerminal) {
    world.connect();
    world.waits("w");
    ASSERT_EQ(world.platform.panels.visible().size(), 1U);
    view().list().rows().front()->click();
    EXPECT_TRUE(world.platform.panels.visible().empty());
    EXPECT_FALSE(world.platform.applications.activated.empty());
}

TEST_F(MenuBarViewTest, figuresAreAsDesigned) {
    world.connect();
    world.waits("w");
    world.runs("r");
    view();
    const auto& rows = view().list().rows();
    EXPECT_EQ(rows[0]->size(), QSize(340, 48));
    EXPECT_EQ(rows[1]->geometry(), QRect(0, 48, 340, 48));
    const auto lines = rows[0]->findChildren<LineLabel*>();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0]->x(), 28);
    EXPECT_EQ(lines[0]->geometry().right() + 1, 340 - 12);
    EXPECT_EQ(lines[1]->y(), lines[0]->geometry().bottom() + 2);
    EXPECT_EQ(lines[0]->font().pixelSize(), 13);
    EXPECT_EQ(lines[0]->font().weight(), QFont::DemiBold);
    EXPECT_EQ(lines[1]->font().pixelSize(), 11);

    const auto dividers = view().findChildren<Divider*>();
    ASSERT_EQ(dividers.size(), 2);
    EXPECT_EQ(dividers[0]->width(), 340);
    EXPECT_EQ(view().list().y(), dividers[0]->y() + 1);
    EXPECT_EQ(dividers[1]->y(), view().list().y() + 96);

    const auto* const contact = static_cast<PlainButton*>(button(view(), "Custom feature? Contact us"));
    EXPECT_EQ(contact->contentRect().right() + 1, 340 - 12);
    EXPECT_EQ(contact->font().pixelSize(), 11);
    EXPECT_EQ(contact->font().weight(), QFont::Medium);
    const auto* const quiet = static_cast<PlainButton*>(button(view(), "Quiet for 1 hour"));
    const auto* const settings = static_cast<PlainButton*>(button(view(), "Settings…"));
    const auto* const quit = static_cast<PlainButton*>(button(view(), "Quit"));
    EXPECT_EQ(quiet->contentRect().x(), 12);
    EXPECT_EQ(quiet->contentRect().y(), dividers[1]->y() + 1 + 12);
    EXPECT_EQ(quiet->contentRect().bottom() + 1 + 12, view().height());
    EXPECT_EQ(quit->contentRect().right() + 1, 340 - 12);
    EXPECT_EQ(settings->contentRect().right() + 1 + 16, quit->contentRect().x());
    EXPECT_EQ(quit->font().pixelSize(), 13);
}

TEST_F(MenuBarViewTest, rightToLeftMirrorsTheRows) {
    world.connect();
    world.waits("w");
    view().setLayoutDirection(Qt::RightToLeft);
    const auto lines = view().list().rows().front()->findChildren<LineLabel*>();
    EXPECT_EQ(lines[0]->x(), 12);
    EXPECT_EQ(lines[0]->geometry().right() + 1, 340 - 28);
    EXPECT_LT(button(view(), "Quit")->x(), button(view(), "Quiet for 1 hour")->x());
}

TEST_F(MenuBarViewTest, longListsScrollAt288) {
    world.connect();
    for (int i = 0; i < 6; ++i)
        world.waits("s" + std::to_string(i));
    EXPECT_EQ(view().list().height(), 288);
    EXPECT_EQ(view().list().verticalScrollBar()->maximum(), 0);
    const int height = view().height();
    world.waits("s6");
    world.waits("s7");
    EXPECT_EQ(view().list().height(), 288);
    EXPECT_EQ(view().height(), height);
    EXPECT_EQ(view().list().verticalScrollBar()->maximum(), 2 * 48);
}

TEST_F(MenuBarViewTest, listFadesWhileMoreIsBelow) {
    world.connect();
    for (int i = 0; i < 8; ++i)
        world.waits("s" + std::to_string(i));
    const auto dotAtEnd = [this] {
        // The seventh row's first line would be clipped here.
        return view().grab().toImage().pixelColor(16, view().list().geometry().bottom());
    };
    view().list().verticalScrollBar()->setValue(24);
    EXPECT_GT(dotAtEnd().lightness(), 230) << "a dot that is cut through its middle has faded";
    view().list().verticalScrollBar()->setValue(96);
    EXPECT_EQ(view().list().rows().back()->mapTo(&view().list(), QPoint()).y(), 240);
}

TEST_F(MenuBarViewTest, longProjectNamesAreElidedInTheMiddle) {
    world.connect();
    world.waits("w", "very-long-repository-name-of-the-customer-portal-rewrite-2026");
    const auto lines = view().list().rows().front()->findChildren<LineLabel*>();
    const QString shown = lines[0]->shownText();
    EXPECT_TRUE(shown.startsWith(QStringLiteral("very-long")));
    EXPECT_TRUE(shown.endsWith(QStringLiteral("2026")));
    EXPECT_TRUE(shown.contains(QChar(0x2026)));
    EXPECT_EQ(
        spoken().front(),
        "very-long-repository-name-of-the-customer-portal-rewrite-2026, Claude, Waiting for you · 0:01");
}

TEST_F(MenuBarViewTest, tabVisitsEverythingInOrder) {
    world.connect();
    world.waits("a");
    world.runs("b");
    world.model().quietForAnHour();
    view();
    std::vector<std::string> order;
    for (int i = 0; i < 7; ++i) {
        key(Qt::Key_Tab);
        order.push_back(focused());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Custom feature? Contact us", "a", "b", "Resume",
                                               "Quiet for 1 hour", "Settings…", "Quit"}));
}

TEST_F(MenuBarViewTest, arrowsMoveThroughTheRows) {
    world.connect();
    world.waits("a");
    world.runs("b");
    view();
    key(Qt::Key_Down);
    EXPECT_EQ(focused(), "a");
    key(Qt::Key_Down);
    EXPECT_EQ(focused(), "b");
    key(Qt::Key_Down);
    EXPECT_EQ(focused(), "b");
    key(Qt::Key_Up);
    EXPECT_EQ(focused(), "a");
    key(Qt::Key_Return);
    EXPECT_FALSE(world.platform.applications.activated.empty());
}

TEST_F(MenuBarViewTest, focusBringsRowsIntoView) {
    world.connect();
    for (int i = 0; i < 9; ++i)
        world.waits("s" + std::to_string(i));
    view();
    for (int i = 0; i < 9; ++i)
        key(Qt::Key_Down);
    EXPECT_EQ(view().list().verticalScrollBar()->value(), view().list().verticalScrollBar()->maximum());
    EXPECT_TRUE(view().list().rows().back()->hasFocus());
}

TEST_F(MenuBarViewTest, rowsAreAddedMovedAndRemovedWithoutLosingTheFocus) {
    world.connect();
    world.runs("a");
    world.runs("b");
    view();
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    ASSERT_EQ(focused(), "a") << "the latest event is first";
    const SessionRow* const row = view().list().rows().back();

    world.waits("c");
    EXPECT_EQ(focused(), "a") << "a row was added";
    world.waits("a");
    EXPECT_EQ(focused(), "a") << "its own row moved";
    EXPECT_EQ(view().list().rows().front(), row) << "and is still the same";
    world.ends("b");
    EXPECT_EQ(focused(), "a") << "another row was removed";
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "c") << "Tab follows the new order";
    world.ends("c");
    EXPECT_EQ(focused(), "a") << "the focused row was removed";
    world.ends("a");
    EXPECT_EQ(focused(), "") << "none is left";
    EXPECT_TRUE(view().hasFocus());
}

TEST_F(MenuBarViewTest, aRowMayBeRemovedWhileItIsPressed) {
    world.connect();
    world.runs("a");
    view();
    const QPointer<SessionRow> row = view().list().rows().front();
    QTest::mousePress(row, Qt::LeftButton);
    world.ends("a");
    EXPECT_TRUE(view().list().rows().empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(row.isNull());
    QTest::mouseRelease(&view(), Qt::LeftButton); // or the next tests would have the button down
}

TEST_F(MenuBarViewTest, unchangedPartsAreNotRepainted) {
    world.connect();
    world.runs("a");
    world.waits("b");
    view();
    QCoreApplication::processEvents();
    struct PaintCounter : QObject {
        bool eventFilter(QObject* /*object*/, QEvent* event) override {
            if (event->type() == QEvent::Paint) ++count;
            return false;
        }
        int count = 0;
    } still;
    PaintCounter moving;
    const auto& rows = view().list().rows();
    for (auto* const line : rows[1]->findChildren<LineLabel*>())
        line->installEventFilter(&still);
    rows[0]->findChildren<LineLabel*>()[1]->installEventFilter(&moving);
    for (int i = 0; i < 5; ++i) {
        world.pass();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(still.count, 0);
    EXPECT_GE(moving.count, 5);
}

TEST_F(MenuBarViewTest, assistiveTechnologyFindsEveryControlByItsName) {
    world.connect();
    world.waits("a");
    world.model().quietForAnHour();
    for (auto* const press : view().findChildren<QAbstractButton*>()) {
        if (press->isHidden()) continue;
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(press);
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->role(), QAccessible::Button);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty());
        EXPECT_TRUE(accessible->state().focusable);
        ASSERT_NE(accessible->actionInterface(), nullptr);
        EXPECT_TRUE(
            accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    }
    SessionRow* const row = view().list().rows().front();
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(row);
    EXPECT_EQ(accessible->text(QAccessible::Name), row->spokenText());
    EXPECT_EQ(accessible->childCount(), 0);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(world.platform.applications.activated.empty());
}

} // namespace
} // namespace corvane
