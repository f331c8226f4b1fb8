#include "App/Support/MenuBarSupport.h"
#include "App/Support/Waiting.h"
#include "ApplicationMenuBar.h"
#include "Controls/Buttons.h"
#include "CorvaneApp.h"
#include "MainWindow.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBar/TrayPanelView.h"
#include "Settings/SettingsPages.h"
#include "Settings/SettingsTabBar.h"
#include "Settings/SettingsWindow.h"
#include "Style/Times.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QStyleHints>
#include <QtTest/QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace corvane {
namespace {

class CorvaneAppTest : public testing::Test {
  protected:
    CorvaneApp& app() {
        if (!app_) {
            app_.emplace(AgentConnector(world.home.path(), world.paths), world.defaults,
                         world.platform.services(), [](const QUrl& /*url*/) {});
        }
        return *app_;
    }
    recording::FakeStatusItem& tray() { return world.platform.statusItem; }

    void pass(int count = 1) { world.platform.time.advance(std::chrono::seconds(count)); }

    /// Drops an event directly, since the model belongs to the application.
    void waits(const std::string& session) {
        const auto file = world.paths.events() / (session + "-1.event");
        test::writeFile(
            file, "corvane-event 1\nsource=claude\nterm=ghostty\nbundle=\n---\n"
                  R"({"hook_event_name":"Notification","session_id":")" +
                      session + R"(","cwd":"/w/R&D","notification_type":"permission_prompt","message":"x"})");
        test::setModificationDate(file, world.platform.time.now());
        pass();
    }

    std::vector<std::string> entries() {
        std::vector<std::string> result;
        for (const QAction* const action : tray().menu->actions()) {
            if (action->isVisible())
                result.push_back(action->isSeparator() ? "-" : action->text().toStdString());
        }
        return result;
    }

    void choose(const char* text) {
        for (QAction* const action : tray().menu->actions()) {
            if (action->text() == QString::fromUtf8(text) && action->isVisible()) {
                action->trigger();
                return;
            }
        }
        FAIL() << "no entry " << text;
    }

    test::MenuBarWorld world;

  private:
    std::optional<CorvaneApp> app_;
};

TEST_F(CorvaneAppTest, theFirstLaunchShowsTheMainWindow) {
    app().launch();
    ASSERT_NE(app().mainWindow(), nullptr);
    EXPECT_TRUE(app().mainWindow()->isVisible());
    EXPECT_TRUE(app().model().launchWindowHandled());
}

TEST_F(CorvaneAppTest, aLaunchAfterOnboardingShowsOnlyTheTrayIcon) {
    world.defaults.setBoolean("hasCompletedOnboarding", true);
    app().launch();
    EXPECT_EQ(app().mainWindow(), nullptr);
    EXPECT_EQ(app().settingsWindow(), nullptr);
    EXPECT_EQ(tray().label, QStringLiteral("Corvane"));
    EXPECT_TRUE(app().model().launchWindowHandled());
}

TEST_F(CorvaneAppTest, theFirstOpeningByHandStaysOpen) {
    world.defaults.setBoolean("hasCompletedOnboarding", true);
    app().launch();
    choose("Open Corvane");
    ASSERT_NE(app().mainWindow(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_TRUE(app().mainWindow()->isVisible());
}

TEST_F(CorvaneAppTest, aSecondStartOpensTheMainWindow) {
    world.defaults.setBoolean("hasCompletedOnboarding", true);
    app().launch();
    Q_EMIT world.platform.singleInstance.reopened();
    ASSERT_NE(app().mainWindow(), nullptr);
    EXPECT_TRUE(app().mainWindow()->isVisible());
    app().mainWindow()->close();
    Q_EMIT world.platform.singleInstance.reopened();
    EXPECT_TRUE(app().mainWindow()->isVisible());
}

TEST_F(CorvaneAppTest, windowsArePresentedEachTimeTheyAreOpened) {
    app().openMainWindow();
    app().openSettings();
    app().openMainWindow();
    EXPECT_EQ(world.platform.activation.presented,
              (std::vector<const QWidget*>{app().mainWindow(), app().settingsWindow(), app().mainWindow()}));
}

TEST_F(CorvaneAppTest, theSystemIsAskedForItsSymbols) {
    app().openSettings();
    (void)app().settingsWindow()->grab();
    EXPECT_THAT(world.platform.systemSymbols.asked, testing::Contains(QStringLiteral("info.circle")));
}

TEST_F(CorvaneAppTest, closingWindowsNeverQuits) {
    app().launch();
    bool quits = false;
    const auto connection =
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [&quits] { quits = true; });
    app().openSettings();
    app().settingsWindow()->close();
    app().mainWindow()->close();
    QCoreApplication::processEvents();
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    EXPECT_FALSE(quits);
    QObject::disconnect(connection);
}

TEST_F(CorvaneAppTest, theTrayShowsHowManyWait) {
    app().model().connectAgent(AgentKind::claude);
    pass(0);
    EXPECT_EQ(tray().waitingCount, 0);
    waits("a");
    EXPECT_EQ(tray().waitingCount, 1);
    EXPECT_EQ(tray().label, QStringLiteral("1 agent waiting for you"));
    waits("b");
    waits("c");
    EXPECT_EQ(tray().label, QStringLiteral("3 agents waiting for you"));
    const int shows = tray().showCount;
    pass(30);
    EXPECT_EQ(tray().showCount, shows) << "only when the number changes";
}

TEST_F(CorvaneAppTest, theTrayCountsNoneWhileThePanelOnlyOffersToConnect) {
    app();
    waits("a");
    EXPECT_EQ(tray().waitingCount, 0);
    EXPECT_EQ(tray().label, QStringLiteral("Corvane"));
    app().model().connectAgent(AgentKind::claude);
    EXPECT_EQ(tray().waitingCount, 1);
    app().model().disconnectAgent(AgentKind::claude);
    EXPECT_EQ(tray().waitingCount, 0);
}

TEST_F(CorvaneAppTest, theTraysToolTipShowsQuietTime) {
    app().model().connectAgent(AgentKind::claude);
    waits("a");
    EXPECT_EQ(tray().toolTip, tray().label);
    app().model().quietForAnHour();
    EXPECT_EQ(tray().label, QStringLiteral("1 agent waiting for you"));
    EXPECT_EQ(tray().toolTip,
              QStringLiteral("1 agent waiting for you\n") + times::quietUntil(*app().model().quietUntil()));
    pass(3601);
    EXPECT_EQ(tray().toolTip, tray().label);
}

TEST_F(CorvaneAppTest, theMenuHasTheCommandsOfThePanel) {
    app().model().connectAgent(AgentKind::claude);
    pass(0);
    EXPECT_EQ(entries(),
              (std::vector<std::string>{"Open Corvane", "-", "Quiet for 1 hour", "Settings…", "Quit"}));
    waits("a");
    pass(4);
    Q_EMIT tray().menu->aboutToShow();
    EXPECT_EQ(entries(), (std::vector<std::string>{"Open Corvane", "-",
                                                   "\u2068R&&D\u2069 · Claude · Waiting for you · 0:05", "-",
                                                   "Quiet for 1 hour", "Settings…", "Quit"}));
    choose("Quiet for 1 hour");
    EXPECT_TRUE(app().model().prefs().isQuiet(app().model().now()));
    EXPECT_EQ(entries().at(5), "Resume");
    choose("Resume");
    EXPECT_FALSE(app().model().prefs().isQuiet(app().model().now()));
    choose("\u2068R&&D\u2069 · Claude · Waiting for you · 0:05");
    EXPECT_FALSE(world.platform.applications.activated.empty());
    choose("Settings…");
    ASSERT_NE(app().settingsWindow(), nullptr);
    EXPECT_TRUE(app().settingsWindow()->isVisible());
}

TEST_F(CorvaneAppTest, aPressOpensThePanelAndAnotherOneClosesIt) {
    app();
    Q_EMIT tray().pressed({1000, 0, 24, 24});
    ASSERT_NE(app().panel(), nullptr);
    EXPECT_TRUE(app().panel()->isVisible());
    EXPECT_EQ(app().panel()->cardGeometry().width(), 340);
    Q_EMIT tray().pressed({1000, 0, 24, 24});
    EXPECT_FALSE(app().panel()->isVisible());
    Q_EMIT tray().pressed({1000, 0, 24, 24});
    EXPECT_TRUE(app().panel()->isVisible());
}

TEST_F(CorvaneAppTest, thePanelOpensInTheCornerIfTheIconsPlaceIsUnknown) {
    world.platform.screens.frame = QRect(0, 0, 800, 760);
    app();
    QCursor::setPos(200, 200);
    Q_EMIT tray().pressed({});
    EXPECT_EQ(app().panel()->cardGeometry().bottomRight(), QPoint(800 - 4 - 1, 760 - 4 - 1));
}

TEST_F(CorvaneAppTest, thePanelClosesWhenTheMenuOpens) {
    app();
    Q_EMIT tray().pressed({});
    ASSERT_TRUE(app().panel()->isVisible());
    Q_EMIT tray().menu->aboutToShow();
    EXPECT_FALSE(app().panel()->isVisible());
}

TEST_F(CorvaneAppTest, thePanelClosesOnEscape) {
    app();
    Q_EMIT tray().pressed({});
    QTest::keyClick(&app().panel()->view(), Qt::Key_Escape);
    EXPECT_FALSE(app().panel()->isVisible());
}

/// Calls back each time a window is hidden.
class Hidings : public QObject {
  public:
    Hidings(QWidget& window, std::function<void()> callBack)
        : callBack_(std::move(callBack)) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Hide) callBack_();
        return false;
    }

  private:
    std::function<void()> callBack_;
};

TEST_F(CorvaneAppTest, thePanelClosesWhenItLosesTheFocusAndThePressThatTookItDoesNotReopenIt) {
    app();
    Q_EMIT tray().pressed({});
    ASSERT_TRUE(app().panel()->isVisible());
    int hidings = 0;
    {
        // At once: a later press, as after a pause of a busy machine, counts as another one.
        const Hidings pressed(*app().panel(), [&] {
            if (++hidings == 1) Q_EMIT tray().pressed({});
        });
        world.platform.panelHosts.last->setKeyboard(false);
        EXPECT_TRUE(QTest::qWaitFor([&] { return hidings > 0; }, test::longestWait));
    }
    EXPECT_EQ(hidings, 1);
    EXPECT_FALSE(app().panel()->isVisible());
    Q_EMIT tray().pressed({});
    EXPECT_TRUE(app().panel()->isVisible());
}

TEST_F(CorvaneAppTest, thePanelClosesWhenItOpensTheSettings) {
    app().openPanel();
    test::button(app().panel()->view(), "Settings…")->click();
    EXPECT_FALSE(app().panel()->isVisible());
    ASSERT_NE(app().settingsWindow(), nullptr);
    EXPECT_TRUE(app().settingsWindow()->isVisible());
}

TEST_F(CorvaneAppTest, thePanelChecksTheConnectionsEachTimeItOpens) {
    app();
    Q_EMIT tray().pressed({});
    EXPECT_NE(test::button(app().panel()->view(), "Connect Claude Code"), nullptr);
    Q_EMIT tray().pressed({});
    ASSERT_FALSE(app().panel()->isVisible());
    static_cast<void>(
        AgentConnector(world.home.path(), world.paths).connect(AgentKind::claude, world.platform.time.now()));
    Q_EMIT tray().pressed({});
    EXPECT_EQ(test::button(app().panel()->view(), "Connect Claude Code"), nullptr);
}

TEST_F(CorvaneAppTest, thePanelGrowsInPlaceWhileItIsOpen) {
    static_cast<void>(
        AgentConnector(world.home.path(), world.paths).connect(AgentKind::claude, world.platform.time.now()));
    app();
    Q_EMIT tray().pressed({300, 790, 22, 10});
    const QRect before = app().panel()->cardGeometry();
    for (const char* const session : {"a", "b", "c"})
        waits(session);
    const QRect after = app().panel()->cardGeometry();
    EXPECT_GT(after.height(), before.height());
    EXPECT_EQ(after.bottom(), before.bottom()) << "it grows away from the bar";
    EXPECT_EQ(after.left(), before.left());
}

TEST_F(CorvaneAppTest, tabReachesButtonsEvenIfTheSystemSkipsThem) {
    QGuiApplication::styleHints()->setTabFocusBehavior(Qt::TabFocusTextControls);
    app().openPanel();
    QTest::keyClick(app().panel(), Qt::Key_Tab);
    EXPECT_NE(qobject_cast<PushButton*>(app().panel()->focusWidget()), nullptr);
}

TEST_F(CorvaneAppTest, bannersAvoidThePanelAndTheMenu) {
    app();
    waits("a");
    const auto banner = [this] { return world.platform.panels.all.at(0)->origin; };
    const QPoint usual = banner();
    Q_EMIT tray().pressed({640, 0, 24, 24});
    EXPECT_GT(banner().y(), app().panel()->cardGeometry().bottom());
    EXPECT_EQ(world.platform.panels.above, std::vector<QWidget*>{app().panel()});
    Q_EMIT tray().pressed({640, 0, 24, 24});
    pass();
    EXPECT_EQ(banner(), usual);
    tray().menu->popup({640, 24});
    EXPECT_GT(banner().y(), tray().menu->geometry().bottom());
    tray().menu->close();
    pass();
    EXPECT_EQ(banner(), usual);
}

class SessionsCommand : public CorvaneAppTest {
  protected:
    void SetUp() override {
        app().openMainWindow();
        app().mainWindow()->move(200, 300);
        file = app().mainWindow()->menuBar()->actions().at(0)->menu();
        ASSERT_EQ(file->actions().at(0)->text(), QStringLiteral("Sessions"));
    }

    [[nodiscard]] QRect panel() { return app().panel()->cardGeometry(); }

    QMenu* file = nullptr;
};

TEST_F(SessionsCommand, opensThePanelAtTheIcon) {
    tray().iconPlace = {600, 10, 24, 24};
    file->actions().at(0)->trigger();
    EXPECT_EQ(panel().left(), 611 - 340 / 2);
    EXPECT_EQ(panel().top(), 10 + 24 + 4);
}

TEST_F(SessionsCommand, opensThePanelUnderTheMenuIfTheIconsPlaceIsUnknown) {
    file->actions().at(0)->trigger();
    const QMenuBar& bar = *app().mainWindow()->menuBar();
    const QRect title = bar.actionGeometry(file->menuAction());
    const QPoint corner = bar.mapToGlobal(title.bottomLeft());
    EXPECT_EQ(panel().top(), corner.y() + 1 + 4);
    EXPECT_LE(panel().left(), corner.x());
    EXPECT_GE(panel().right(), corner.x());
}

/// On a system with one menu bar for all windows.
class ApplicationMenuBarTest : public CorvaneAppTest {
  protected:
    void SetUp() override { world.platform.menuBars = MenuBars::ofApplication; }

    std::vector<QAction*> items() {
        std::vector<QAction*> result;
        for (const QAction* const menu : app().menuBar()->bar().actions()) {
            for (QAction* const action : menu->menu()->actions()) {
                if (!action->isSeparator()) result.push_back(action);
            }
        }
        return result;
    }

    void choose(const char* text) {
        for (QAction* const action : items()) {
            if (action->text() == QString::fromUtf8(text)) return action->trigger();
        }
        FAIL() << "no entry " << text;
    }

    static void activate(QWidget& window) {
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window, test::longestWait));
    }
};

TEST_F(ApplicationMenuBarTest, belongsToNoWindowAndHasAllCommands) {
    std::vector<std::string> texts;
    std::map<std::string, QAction::MenuRole> roles;
    for (const QAction* const action : items()) {
        texts.push_back(action->text().toStdString() + " " +
                        action->shortcut().toString(QKeySequence::PortableText).toStdString());
        if (action->menuRole() != QAction::NoRole) roles[action->text().toStdString()] = action->menuRole();
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"Sessions ", "Settings… Ctrl+,", "Close Ctrl+W", "Quit Ctrl+Q",
                                               "About Corvane ", "Corvane Ctrl+0"}));
    EXPECT_EQ(roles, (std::map<std::string, QAction::MenuRole>{{"About Corvane", QAction::AboutRole},
                                                               {"Settings…", QAction::PreferencesRole},
                                                               {"Quit", QAction::QuitRole}}));
    EXPECT_EQ(app().menuBar()->bar().parent(), nullptr);
    app().openMainWindow();
    EXPECT_EQ(app().mainWindow()->findChild<QMenuBar*>(), nullptr);
}

TEST_F(ApplicationMenuBarTest, closesTheActiveWindow) {
    app().openMainWindow();
    app().openSettings();
    activate(*app().settingsWindow());
    choose("Close");
    EXPECT_FALSE(app().settingsWindow()->isVisible());
    EXPECT_TRUE(app().mainWindow()->isVisible());
    activate(*app().mainWindow());
    choose("Close");
    EXPECT_FALSE(app().mainWindow()->isVisible());
    choose("Close");
}

TEST_F(ApplicationMenuBarTest, ignoresWindowsWithoutCommands) {
    QWidget banner;
    app();
    banner.show();
    activate(banner);
    choose("Close");
    EXPECT_TRUE(banner.isVisible());
}

TEST_F(ApplicationMenuBarTest, opensWindowsAndTheTabAboutTheApplication) {
    choose("Corvane");
    EXPECT_TRUE(app().mainWindow()->isVisible());
    choose("Settings…");
    const SettingsTabBar& tabs = app().settingsWindow()->view().tabs();
    EXPECT_EQ(tabs.currentIndex(), 0);
    choose("About Corvane");
    EXPECT_EQ(tabs.tabText(tabs.currentIndex()), QStringLiteral("About"));
    choose("Sessions");
    EXPECT_TRUE(app().panel()->isVisible());
}

TEST_F(CorvaneAppTest, windowsWithMenusOfTheirOwnNeedNoOther) {
    EXPECT_EQ(app().menuBar(), nullptr);
    app().openMainWindow();
    EXPECT_NE(app().mainWindow()->findChild<QMenuBar*>(), nullptr);
}

TEST_F(CorvaneAppTest, theAppearanceIsFollowed) {
    app();
    EXPECT_EQ(Tokens::scheme(QApplication::palette()), ColorScheme::light);
    world.platform.appearance.scheme = ColorScheme::dark;
    Q_EMIT world.platform.appearance.changed();
    EXPECT_EQ(Tokens::scheme(QApplication::palette()), ColorScheme::dark);
    world.platform.appearance.scheme = ColorScheme::light;
    Q_EMIT world.platform.appearance.changed();
}

} // namespace
} // namespace corvane
