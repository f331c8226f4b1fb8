#include "App/Support/Waiting.h"
#include "App/Support/WindowStates.h"
#include "Controls/ErrorText.h"
#include "Controls/Labels.h"
#include "Controls/Paragraph.h"
#include "Settings/AgentCard.h"
#include "Settings/SettingsTabBar.h"
#include "Settings/SettingsWindow.h"
#include "SettingsView.h"
#include "Style/Times.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QStackedWidget>
#include <QTest>
#include <gtest/gtest.h>

#include <utility>

namespace corvane {
namespace {

class SettingsViewTest : public testing::Test {
  protected:
    SettingsView& view() {
        if (!view_) view_ = fixture_.settings();
        return *view_;
    }
    QWidget& page(int index) {
        view().tabs().setCurrentIndex(index);
        (void)view().grab(); // lays out what is not shown
        return *view().findChild<QStackedWidget*>()->widget(index);
    }
    QWidget& agents() { return page(0); }
    QWidget& alerts() { return page(1); }
    QWidget& about() { return page(2); }

    /// Its accessible name: that of its label, if it has one.
    static std::string nameOf(QWidget* widget) {
        auto* const accessible = QAccessible::queryAccessibleInterface(widget);
        const auto labels = accessible->relations(QAccessible::Label);
        return (labels.isEmpty() ? accessible : labels.first().first)->text(QAccessible::Name).toStdString();
    }

    template <typename Control>
    static Control* named(const QWidget& parent, const char* name) {
        for (auto* const control : parent.findChildren<Control*>()) {
            if (nameOf(control) == name) return control;
        }
        ADD_FAILURE() << "no control " << name;
        return nullptr;
    }

    static std::vector<std::string> texts(const QWidget& widget) {
        std::vector<std::string> result;
        for (const auto* const paragraph : widget.findChildren<Paragraph*>())
            result.push_back(paragraph->text().toStdString());
        return result;
    }

    static std::vector<std::string> choices(const Picker& picker) {
        std::vector<std::string> result;
        for (int i = 0; i < picker.count(); ++i)
            result.push_back(picker.itemText(i).toStdString());
        return result;
    }

    void show() {
        view().show();
        view().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view(), test::longestWait));
    }

    test::ModelFixture fixture_;
    std::unique_ptr<SettingsView> view_;
};

TEST_F(SettingsViewTest, hasThreeTabsWithTheirSymbols) {
    EXPECT_EQ(view().size(), QSize(560, 440));
    std::vector<std::string> tabs;
    for (int i = 0; i < view().tabs().count(); ++i) {
        tabs.push_back(view().tabs().tabText(i).toStdString() + " " +
                       view().tabs().tabData(i).toString().toStdString());
    }
    EXPECT_EQ(tabs, (std::vector<std::string>{"Agents terminal", "Alerts bell", "About info.circle"}));
    EXPECT_EQ(view().tabs().currentIndex(), 0);
}

TEST_F(SettingsViewTest, nothingMovesWhenATabIsChosen) {
    const QRect before = view().tabs().tabRect(2);
    view().tabs().setCurrentIndex(2);
    EXPECT_EQ(view().tabs().tabRect(2), before);
    EXPECT_EQ(view().tabs().height(), 45);
}

// Agents

TEST_F(SettingsViewTest, theAgentsTabShowsClaudeFirstAndNoBackupYet) {
    const auto cards = agents().findChildren<AgentCard*>();
    ASSERT_EQ(cards.size(), 2);
    EXPECT_EQ(cards.at(0)->agent(), AgentKind::claude);
    EXPECT_EQ(cards.at(1)->agent(), AgentKind::codex);
    EXPECT_TRUE(named<LinkButton>(agents(), "Show backup in Finder")->isHidden());
    EXPECT_TRUE(agents().findChild<ErrorText*>()->isHidden());
}

TEST_F(SettingsViewTest, aBackupCanBeRevealed) {
    (void)view();
    fixture_.connectClaude();
    auto* const backup = named<LinkButton>(agents(), "Show backup in Finder");
    EXPECT_FALSE(backup->isHidden());
    backup->click();
    ASSERT_TRUE(fixture_.model().lastBackup().has_value());
    EXPECT_EQ(fixture_.platform.fileBrowser.revealed,
              std::vector<std::filesystem::path>{*fixture_.model().lastBackup()});
}

TEST_F(SettingsViewTest, theAgentsTabSendsATestAlertAndShowsErrors) {
    named<BorderedButton>(agents(), "Try a test alert")->click();
    EXPECT_EQ(fixture_.platform.panels.visible().size(), 1U);
    fixture_.failToConnectCodex();
    const auto* const error = agents().findChild<ErrorText*>();
    EXPECT_FALSE(error->isHidden());
    EXPECT_EQ(error->toPlainText().toStdString(), *fixture_.model().connectError());
}

TEST_F(SettingsViewTest, theAgentsTabIsLaidOutAsDesigned) {
    fixture_.connectClaude();
    fixture_.failToConnectCodex();
    const auto cards = agents().findChildren<AgentCard*>();
    const int pageTop = 45;
    EXPECT_EQ(agents().mapTo(&view(), QPoint()).y(), pageTop);
    EXPECT_EQ(cards.at(0)->geometry(), QRect(24, 24, 512, 76));
    EXPECT_EQ(cards.at(1)->geometry(), QRect(24, 112, 512, 76));
    const QRect backup = named<LinkButton>(agents(), "Show backup in Finder")->contentRect();
    EXPECT_EQ(backup.topLeft(), QPoint(24, 200));
    const QRect error = agents().findChild<ErrorText*>()->geometry();
    EXPECT_EQ(error.top(), backup.bottom() + 1 + 12);
    EXPECT_EQ(named<BorderedButton>(agents(), "Try a test alert")->geometry().top(), error.bottom() + 1 + 24);
}

// Alerts

TEST_F(SettingsViewTest, theAlertsTabHasItsRowsInOrder) {
    EXPECT_EQ(
        texts(alerts()),
        (std::vector<std::string>{"Alert when an agent finishes", "Open Corvane at login", "Play sounds",
                                  "Waiting sound", "Finished sound", "Remind me again", "Quiet for 1 hour"}));
    const std::vector<std::string> sounds{"Glass", "Ping", "Hero", "Submarine",
                                          "Purr",  "Pop",  "Tink", "Funk"};
    EXPECT_EQ(choices(*named<Picker>(alerts(), "Waiting sound")), sounds);
    EXPECT_EQ(choices(*named<Picker>(alerts(), "Finished sound")), sounds);
    EXPECT_EQ(choices(*named<Picker>(alerts(), "Remind me again")),
              (std::vector<std::string>{"Off", "Every 1 min", "Every 2 min", "Every 5 min"}));
}

TEST_F(SettingsViewTest, freshPreferencesAreShown) {
    EXPECT_TRUE(named<Switch>(alerts(), "Alert when an agent finishes")->isChecked());
    EXPECT_FALSE(named<Switch>(alerts(), "Open Corvane at login")->isChecked());
    EXPECT_TRUE(named<Switch>(alerts(), "Play sounds")->isChecked());
    EXPECT_EQ(named<Picker>(alerts(), "Waiting sound")->currentText().toStdString(), "Glass");
    EXPECT_EQ(named<Picker>(alerts(), "Finished sound")->currentText().toStdString(), "Tink");
    EXPECT_EQ(named<Picker>(alerts(), "Remind me again")->currentText().toStdString(), "Every 2 min");
}

TEST_F(SettingsViewTest, everyControlChangesItsPreferenceAlone) {
    AlertPreferences expected;
    const auto choose = [&](const char* name, int index) {
        auto* const picker = named<Picker>(alerts(), name);
        picker->setCurrentIndex(index);
        Q_EMIT picker->activated(index);
    };
    named<Switch>(alerts(), "Alert when an agent finishes")->click();
    expected.alertWhenDone = false;
    EXPECT_EQ(fixture_.model().prefs(), expected);
    named<Switch>(alerts(), "Play sounds")->click();
    expected.soundsOn = false;
    EXPECT_EQ(fixture_.model().prefs(), expected);
    choose("Waiting sound", 1);
    expected.waitingSound = "Ping";
    EXPECT_EQ(fixture_.model().prefs(), expected);
    choose("Finished sound", 7);
    expected.doneSound = "Funk";
    EXPECT_EQ(fixture_.model().prefs(), expected);
    choose("Remind me again", 3);
    expected.reminderMinutes = 5;
    EXPECT_EQ(fixture_.model().prefs(), expected);
    choose("Remind me again", 0);
    expected.reminderMinutes = 0;
    EXPECT_EQ(fixture_.model().prefs(), expected);
    EXPECT_EQ(AlertPreferences::load(fixture_.defaults, AppModel::preferencesKey), expected);
}

TEST_F(SettingsViewTest, quietTimeIsStartedInTheModel) {
    auto* const start = named<BorderedButton>(alerts(), "Quiet for 1 hour");
    start->click();
    EXPECT_EQ(fixture_.model().prefs().quietUntil, fixture_.model().now() + Seconds(3600));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(start)->text(QAccessible::Name).toStdString(), "Start");
}

TEST_F(SettingsViewTest, quietTimeIsShownBesideItsButtonWhileItLasts) {
    const auto seen = [this] {
        std::vector<std::string> result;
        for (const auto* const line : alerts().findChildren<LineLabel*>()) {
            if (!line->isHidden()) result.push_back(line->text().toStdString());
        }
        return result;
    };
    EXPECT_TRUE(seen().empty());
    named<BorderedButton>(alerts(), "Quiet for 1 hour")->click();
    const std::string until = times::quietUntil(*fixture_.model().quietUntil()).toStdString();
    EXPECT_EQ(seen(), std::vector<std::string>{until});
    const auto* const line = alerts().findChild<LineLabel*>();
    const auto* const start = named<BorderedButton>(alerts(), "Quiet for 1 hour");
    EXPECT_EQ(line->geometry().right() + 1 + 12, start->x());
    EXPECT_NEAR(line->geometry().center().y(), start->geometry().center().y(), 1);
    fixture_.model().resumeAlerts();
    EXPECT_TRUE(seen().empty());
}

TEST_F(SettingsViewTest, aChosenSoundIsHeardInQuietTimeTooAndNoneCanBeChosenWhileSoundsAreOff) {
    fixture_.model().quietForAnHour();
    for (const auto& [name, sound] :
         {std::pair{"Waiting sound", "Hero"}, std::pair{"Finished sound", "Pop"}}) {
        auto* const picker = named<Picker>(alerts(), name);
        EXPECT_TRUE(picker->isEnabled());
        const int index = picker->findText(QString::fromLatin1(sound));
        picker->setCurrentIndex(index);
        EXPECT_TRUE(fixture_.platform.sounds.played.empty());
        for (int times = 1; times <= 2; ++times) { // the same one once more
            Q_EMIT picker->activated(index);
            EXPECT_EQ(std::exchange(fixture_.platform.sounds.played, {}), std::vector<std::string>{sound});
        }
    }
    named<Switch>(alerts(), "Play sounds")->click();
    EXPECT_FALSE(named<Picker>(alerts(), "Waiting sound")->isEnabled());
    EXPECT_FALSE(named<Picker>(alerts(), "Finished sound")->isEnabled());
    EXPECT_TRUE(named<Picker>(alerts(), "Remind me again")->isEnabled());
}

TEST_F(SettingsViewTest, aBackupIsOfferedWhileItsAgentIsConnected) {
    auto* const link = agents().findChild<LinkButton*>();
    fixture_.connectClaude();
    EXPECT_FALSE(link->isHidden());
    fixture_.model().disconnectAgent(AgentKind::claude);
    EXPECT_TRUE(link->isHidden());
    EXPECT_TRUE(fixture_.model().lastBackup());

    // Nor is it offered once another program has removed the entries.
    fixture_.connectClaude();
    EXPECT_FALSE(link->isHidden());
    test::writeFile(fixture_.home / ".claude/settings.json", "{}\n");
    fixture_.model().refreshConnections();
    EXPECT_TRUE(link->isHidden());
}

TEST_F(SettingsViewTest, aStoredValueThatIsNoChoiceShowsNoSelection) {
    AlertPreferences prefs;
    prefs.waitingSound = "Sosumi";
    prefs.doneSound = "";
    prefs.reminderMinutes = 7;
    fixture_.model().setPrefs(prefs);
    for (const char* const name : {"Waiting sound", "Finished sound", "Remind me again"}) {
        const auto* const picker = named<Picker>(alerts(), name);
        EXPECT_EQ(picker->currentIndex(), -1);
        EXPECT_TRUE(picker->currentText().isEmpty());
    }
    show();
    EXPECT_EQ(fixture_.model().prefs(), prefs);
}

TEST_F(SettingsViewTest, showingTheSettingsStoresNothing) {
    fixture_.platform.loginItem.enabled = true;
    fixture_.platform.loginItem.failure = "must not be changed";
    (void)fixture_.model();
    (void)alerts();
    show();
    view().hide();
    show();
    EXPECT_TRUE(named<Switch>(alerts(), "Open Corvane at login")->isChecked());
    EXPECT_EQ(fixture_.model().connectError(), std::nullopt);
    EXPECT_TRUE(fixture_.defaults.values.empty());
}

TEST_F(SettingsViewTest, externalChangesAreFollowed) {
    (void)alerts();
    AlertPreferences prefs;
    prefs.soundsOn = false;
    prefs.doneSound = "Hero";
    fixture_.model().setPrefs(prefs);
    EXPECT_FALSE(named<Switch>(alerts(), "Play sounds")->isChecked());
    EXPECT_EQ(named<Picker>(alerts(), "Finished sound")->currentText().toStdString(), "Hero");
}

TEST_F(SettingsViewTest, theLoginSwitchRegistersAndShowsTheActualStateWheneverTheTabIsShown) {
    auto* const login = named<Switch>(alerts(), "Open Corvane at login");
    show();
    login->click();
    EXPECT_TRUE(fixture_.platform.loginItem.enabled);
    EXPECT_TRUE(login->isChecked());

    // The user has deleted the entry.
    fixture_.platform.loginItem.enabled = false;
    (void)about();
    (void)alerts();
    EXPECT_FALSE(login->isChecked());
}

TEST_F(SettingsViewTest, aFailingLoginSwitchRevertsAndShowsWhy) {
    fixture_.platform.loginItem.failure = "The folder cannot be written.";
    auto* const login = named<Switch>(alerts(), "Open Corvane at login");
    login->click();
    EXPECT_FALSE(login->isChecked());
    const auto* const error = alerts().findChild<ErrorText*>();
    EXPECT_FALSE(error->isHidden());
    EXPECT_EQ(error->toPlainText().toStdString(),
              "Couldn't change “Open at login”: The folder cannot be written.");
    EXPECT_LE(error->geometry().bottom(), alerts().height());

    fixture_.platform.loginItem.failure = std::nullopt;
    login->click();
    EXPECT_TRUE(login->isChecked());
    EXPECT_TRUE(error->isHidden());
}

TEST_F(SettingsViewTest, anErrorOfTwoLinesIsWholeOnTheAlertsTab) {
    fixture_.platform.loginItem.failure = "The folder for the entries of programs that start at login cannot "
                                          "be written, because its disk is full.";
    named<Switch>(alerts(), "Open Corvane at login")->click();
    const auto* const error = alerts().findChild<ErrorText*>();
    ASSERT_EQ(error->heightForWidth(error->width()), 2 * 16);
    EXPECT_EQ(error->height(), 2 * 16);
    EXPECT_LT(error->geometry().bottom(), alerts().height());
}

TEST_F(SettingsViewTest, theAlertsTabIsLaidOutAsDesigned) {
    const auto groups = alerts().findChildren<FormGroup*>();
    EXPECT_EQ(groups.at(0)->geometry(), QRect(24, 24, 512, 134));
    EXPECT_EQ(groups.at(1)->geometry(), QRect(24, 174, 512, 179));
    EXPECT_EQ(named<Switch>(alerts(), "Play sounds")->contentRect(), QRect(464, 102, 36, 20));
    EXPECT_EQ(named<Picker>(alerts(), "Finished sound")->geometry(), QRect(368, 53, 132, 28));
    EXPECT_EQ(named<BorderedButton>(alerts(), "Quiet for 1 hour")->geometry().right(), 499);
    EXPECT_EQ(named<BorderedButton>(alerts(), "Quiet for 1 hour")->geometry().top(), 143);
}

// About

TEST_F(SettingsViewTest, theAboutTabSaysWhatTheApplicationIs) {
    EXPECT_EQ(
        texts(about()),
        (std::vector<std::string>{
            "Corvane 1.0.0",
            "Corvane taps you when Claude Code or Codex needs you.\nIt needs no account, keeps "
            "everything on the Mac and never goes online.",
            "·", "From the same maker", "Small, careful Mac apps for people who work with AI agents."}));
}

TEST_F(SettingsViewTest, theVersionIsTheApplicationsOwn) {
    QCoreApplication::setApplicationVersion(QStringLiteral("2.3"));
    EXPECT_EQ(texts(about()).front(), "Corvane 2.3");
    QCoreApplication::setApplicationVersion({});
}

TEST_F(SettingsViewTest, theLinksLeadToTheMaker) {
    for (const char* const name : {"Website", "Contact", "More Mac apps ↗"})
        named<LinkButton>(about(), name)->click();
    EXPECT_EQ(fixture_.opened,
              (std::vector<std::string>{"https://corvane.app", "https://corvane.app/contact?source=about",
                                        "https://corvane.app/apps"}));
}

// The whole

TEST_F(SettingsViewTest, everyControlHasItsRole) {
    const auto role = [](QWidget* widget) { return QAccessible::queryAccessibleInterface(widget)->role(); };
    EXPECT_EQ(role(&view().tabs()), QAccessible::PageTabList);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view().tabs())
                  ->child(1)
                  ->text(QAccessible::Name)
                  .toStdString(),
              "Alerts");
    EXPECT_EQ(role(named<Switch>(alerts(), "Play sounds")), QAccessible::CheckBox);
    EXPECT_TRUE(
        QAccessible::queryAccessibleInterface(named<Switch>(alerts(), "Play sounds"))->state().checked);
    EXPECT_EQ(role(named<Picker>(alerts(), "Waiting sound")), QAccessible::ComboBox);
    EXPECT_EQ(role(named<LinkButton>(about(), "Website")), QAccessible::Button);
}

TEST_F(SettingsViewTest, everyControlIsReachedByKeyboard) {
    SettingsWindow window(
        fixture_.model(), fixture_.platform.activation,
        [this](QWidget* parent) { return fixture_.settings(parent).release(); },
        CommandHandlers{[] {}, [] {}, [](QRect /*menu*/) {}, [] {}});
    window.present();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window, test::longestWait));
    EXPECT_EQ(window.windowTitle().toStdString(), "Corvane Settings");
    const auto press = [&](Qt::Key key) { QTest::keyClick(window.focusWidget(), key); };
    const auto focused = [&] { return nameOf(window.focusWidget()); };

    press(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), &window.view().tabs());
    press(Qt::Key_Right);
    EXPECT_EQ(window.view().tabs().currentIndex(), 1);
    std::vector<std::string> order;
    for (int i = 0; i < 7; ++i) {
        press(Qt::Key_Tab);
        order.push_back(focused());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Alert when an agent finishes", "Open Corvane at login",
                                               "Play sounds", "Waiting sound", "Finished sound",
                                               "Remind me again", "Quiet for 1 hour"}));
    press(Qt::Key_Space);
    EXPECT_TRUE(fixture_.model().prefs().quietUntil.has_value());
    press(Qt::Key_Backtab);
    press(Qt::Key_Down);
    EXPECT_EQ(fixture_.model().prefs().reminderMinutes, 5);
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Backtab);
    press(Qt::Key_Space);
    EXPECT_FALSE(fixture_.model().prefs().soundsOn);
    press(Qt::Key_Return);
    EXPECT_TRUE(fixture_.model().prefs().soundsOn);

    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Backtab);
    press(Qt::Key_Right);
    order.clear();
    for (int i = 0; i < 3; ++i) {
        press(Qt::Key_Tab);
        order.push_back(focused());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Website", "Contact", "More Mac apps ↗"}));
}

} // namespace
} // namespace corvane
