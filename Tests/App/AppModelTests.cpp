#include "AppModel.h"
#include "BannerViews.h"
#include "Intake/HookScript.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Support/TestSupport.h"

#include <QAbstractButton>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using recording::RecordingPlatform;
using std::chrono::milliseconds;
using std::chrono::seconds;

class AppModelTest : public testing::Test {
  protected:
    AppModelTest() { std::filesystem::create_directories(paths_.events()); }

    AppModel& model() {
        if (!model_) model_.emplace(AgentConnector(home_.path(), paths_), defaults_, platform_.services());
        return *model_;
    }

    /// Lets `count` passes of the loop go by. The first call runs the pass at the start.
    void pass(int count = 1) {
        model();
        for (int i = 0; i < count; ++i)
            platform_.time.advance(model().ticks() == 0 ? milliseconds(0) : seconds(1));
    }

    /// Drops an event file as the hook would, written at the present time of the made-up clock.
    void drop(const std::string& source, const std::string& payload, Seconds age = Seconds(0)) {
        const auto file = paths_.events() / (std::to_string(++files_) + "-1.event");
        test::writeFile(file,
                        "corvane-event 1\nsource=" + source + "\nterm=ghostty\nbundle=\n---\n" + payload);
        test::setModificationDate(file, platform_.time.now() - age);
    }

    void dropClaude(const std::string& event, const std::string& session, Seconds age = Seconds(0)) {
        drop(
            "claude",
            R"({"hook_event_name":")" + event + R"(","session_id":")" + session +
                R"(","cwd":"/w/shop","notification_type":"permission_prompt","message":"Claude needs your permission to use Bash"})",
            age);
    }

    void dropCodexDone(const std::string& session, Seconds age = Seconds(0)) {
        drop("codex", R"({"type":"agent-turn-complete","thread-id":")" + session + R"(","cwd":"/w/shop"})",
             age);
    }

    void click(const char* name) {
        const auto standing = platform_.panels.standing();
        ASSERT_FALSE(standing.empty());
        for (auto* const button : standing.front()->content->findChildren<QAbstractButton*>()) {
            if (button->text() == QLatin1String(name) || button->accessibleName() == QLatin1String(name)) {
                button->click();
                return;
            }
        }
        FAIL() << "no button " << name;
    }

    [[nodiscard]] std::size_t standing() const { return platform_.panels.standing().size(); }
    [[nodiscard]] const std::vector<std::string>& played() const { return platform_.sounds.played; }

    test::ScratchFolder home_{"home"};
    CorvanePaths paths_ = CorvanePaths::standard(home_.path());
    test::MemoryUserDefaults defaults_;
    RecordingPlatform platform_;
    std::optional<AppModel> model_;
    int files_ = 0;
};

TEST_F(AppModelTest, startsWithTheStoredSettings) {
    AlertPreferences stored;
    stored.doneSound = "Hero";
    stored.save(defaults_, "alertPreferences");
    defaults_.setBoolean("hasCompletedOnboarding", true);
    EXPECT_EQ(model().prefs(), stored);
    EXPECT_TRUE(model().hasCompletedOnboarding());
    EXPECT_EQ(model().now(), platform_.time.now());
    EXPECT_EQ(model().board(), SessionBoard());
    EXPECT_EQ(model().ticks(), 0);
    EXPECT_EQ(model().connected(),
              (std::map<AgentKind, bool>{{AgentKind::claude, false}, {AgentKind::codex, false}}));
    EXPECT_EQ(model().lastBackup(), std::nullopt);
    EXPECT_EQ(model().connectError(), std::nullopt);
}

TEST_F(AppModelTest, theFirstPassRunsAtOnceAndTheNextOnesASecondApart) {
    model();
    platform_.time.advance(milliseconds(0));
    EXPECT_EQ(model().ticks(), 1);
    platform_.time.advance(milliseconds(999));
    EXPECT_EQ(model().ticks(), 1);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(model().ticks(), 2);
    platform_.time.advance(seconds(10));
    EXPECT_EQ(model().ticks(), 12);
}

TEST_F(AppModelTest, theLoopDoesNotOutliveTheModel) {
    pass();
    model_.reset();
    platform_.time.advance(seconds(5));
    EXPECT_EQ(platform_.time.pendingCount(), 0U);
}

TEST_F(AppModelTest, aPassTakesTheTimeFromTheClock) {
    pass();
    platform_.time.setWallClock(Date(1'800'000'000, 5));
    EXPECT_NE(model().now(), Date(1'800'000'000, 5));
    pass();
    EXPECT_EQ(model().now(), Date(1'800'000'001, 5));
}

TEST_F(AppModelTest, aPermissionPromptShowsTheWaitingBannerAndSounds) {
    dropClaude("Notification", "s");
    pass();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->size, QSize(520, 96));
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
    EXPECT_EQ(model().board().waitingCount(), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(paths_.events()));
}

TEST_F(AppModelTest, theBannerGoesWhenTheAgentWorksAgain) {
    dropClaude("Notification", "s");
    pass();
    dropClaude("PostToolUse", "s");
    pass();
    EXPECT_EQ(standing(), 0U);
    EXPECT_EQ(model().board().waitingCount(), 0U);
}

TEST_F(AppModelTest, eventsOfOnePassAreAppliedInOrder) {
    dropClaude("PostToolUse", "s");
    dropClaude("Notification", "s", Seconds(0.002));
    pass();
    EXPECT_EQ(model().board().waitingCount(), 0U);
    EXPECT_EQ(standing(), 0U);
}

TEST_F(AppModelTest, longWorkOfClaudesEndsWithTheDoneBannerForSixSeconds) {
    dropClaude("UserPromptSubmit", "s", Seconds(21));
    dropClaude("Stop", "s");
    pass();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->size, QSize(360, 64));
    EXPECT_EQ(played(), std::vector<std::string>{"Tink"});
    platform_.time.advance(milliseconds(5999));
    EXPECT_EQ(standing(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(standing(), 0U);
}

TEST_F(AppModelTest, withoutDoneAlertsAFinishedAgentIsSilent) {
    AlertPreferences preferences;
    preferences.alertWhenDone = false;
    model().setPrefs(preferences);
    dropCodexDone("t");
    pass();
    EXPECT_EQ(standing(), 0U);
    EXPECT_TRUE(played().empty());
    EXPECT_EQ(model().board().sessions().size(), 1U);
}

TEST_F(AppModelTest, theWaitingSoundIsTheSameWhateverTheSessionWaitsFor) {
    AlertPreferences preferences;
    preferences.waitingSound = "Purr";
    model().setPrefs(preferences);
    drop("claude",
         R"({"hook_event_name":"Notification","session_id":"s","notification_type":"idle_prompt"})");
    pass();
    EXPECT_EQ(played(), std::vector<std::string>{"Purr"});
}

TEST_F(AppModelTest, withSoundsOffOnlyTheBannerComes) {
    AlertPreferences preferences;
    preferences.soundsOn = false;
    model().setPrefs(preferences);
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(standing(), 1U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, quietTimeSilencesAlertsButNotDismissals) {
    dropClaude("Notification", "a");
    pass();
    ASSERT_EQ(standing(), 1U);

    AlertPreferences preferences = model().prefs();
    preferences.quietUntil = model().now() + Seconds(60);
    model().setPrefs(preferences);
    dropClaude("Notification", "b");
    dropCodexDone("t");
    dropClaude("PostToolUse", "a");
    pass();
    EXPECT_EQ(standing(), 0U);
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(model().board().waitingCount(), 1U);
}

TEST_F(AppModelTest, afterQuietTimeTheNextReminderShows) {
    pass();
    model().quietForAnHour();
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(standing(), 0U);
    pass(60);
    model().resumeAlerts();
    EXPECT_EQ(model().prefs().quietUntil, std::nullopt);
    pass(58);
    EXPECT_EQ(standing(), 0U);
    pass(1);
    EXPECT_EQ(standing(), 1U);
    EXPECT_EQ(played().size(), 1U);
}

TEST_F(AppModelTest, quietTimeEndsExactlyOnTime) {
    AlertPreferences preferences;
    pass();
    preferences.quietUntil = model().now() + Seconds(1);
    model().setPrefs(preferences);
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(standing(), 1U);
}

TEST_F(AppModelTest, anHourOfQuietCountsFromTheLastPassAndIsStored) {
    pass();
    const Date passed = model().now();
    platform_.time.advance(milliseconds(700));
    model().quietForAnHour();
    EXPECT_EQ(model().prefs().quietUntil, passed + Seconds(3600));
    EXPECT_EQ(AlertPreferences::load(defaults_, "alertPreferences"), model().prefs());
    model().resumeAlerts();
    EXPECT_EQ(AlertPreferences::load(defaults_, "alertPreferences").quietUntil, std::nullopt);
}

TEST_F(AppModelTest, remindersRecurAtTheChosenInterval) {
    dropClaude("Notification", "s");
    pass();
    pass(119);
    EXPECT_EQ(played().size(), 1U);
    pass(1);
    EXPECT_EQ(played().size(), 2U);
    EXPECT_EQ(standing(), 1U);
    pass(120);
    EXPECT_EQ(played().size(), 3U);
}

TEST_F(AppModelTest, withRemindersOffNothingRecurs) {
    AlertPreferences preferences;
    preferences.reminderMinutes = 0;
    model().setPrefs(preferences);
    dropClaude("Notification", "s");
    pass(1000);
    EXPECT_EQ(played().size(), 1U);
}

TEST_F(AppModelTest, snoozingHoldsTheSessionForFiveMinutesAndClosesItsBanner) {
    dropClaude("Notification", "s");
    pass();
    click("Snooze");
    EXPECT_EQ(standing(), 0U);
    EXPECT_EQ(model().board().sessions().at(0).snoozedUntil, model().now() + Seconds(300));
    pass(299);
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(standing(), 0U);
    pass(1);
    EXPECT_EQ(played().size(), 2U);
    EXPECT_EQ(standing(), 1U);
}

TEST_F(AppModelTest, snoozingCountsFromTheLastPass) {
    dropClaude("Notification", "s");
    pass();
    const Date passed = model().now();
    platform_.time.advance(milliseconds(700));
    click("Snooze");
    EXPECT_EQ(model().board().sessions().at(0).snoozedUntil, passed + Seconds(300));
}

TEST_F(AppModelTest, jumpingDismissesTheBannerAndActivatesTheTerminal) {
    dropClaude("Notification", "s");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(standing(), 0U);
    EXPECT_EQ(platform_.applications.activated, std::vector<std::string>{"com.mitchellh.ghostty"});
}

TEST_F(AppModelTest, jumpingToAnUnknownTerminalDismissesAndLooksForTheAgentsProcess) {
    const auto file = paths_.events() / "1-1.event";
    test::writeFile(file, "corvane-event 1\nsource=claude\nterm=tmux\n---\n"
                          "{\"hook_event_name\":\"Notification\",\"cwd\":\"/w/shop\"}");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(standing(), 0U);
    EXPECT_TRUE(platform_.applications.activated.empty());
    EXPECT_EQ(platform_.applications.searched,
              (std::vector<std::pair<std::string, std::string>>{{"claude", "/w/shop"}}));
}

TEST_F(AppModelTest, everySixtiethPassPrunesTheBoard) {
    dropClaude("UserPromptSubmit", "s", SessionBoard::staleAfter + Seconds(1));
    pass(59);
    EXPECT_EQ(model().board().sessions().size(), 1U);
    pass(1);
    EXPECT_TRUE(model().board().sessions().empty());

    dropClaude("UserPromptSubmit", "s", SessionBoard::staleAfter + Seconds(1));
    pass(59);
    EXPECT_EQ(model().board().sessions().size(), 1U);
    pass(1);
    EXPECT_TRUE(model().board().sessions().empty());
}

TEST_F(AppModelTest, pruningTakesTheBannerOfAForgottenSessionDown) {
    dropClaude("Notification", "s");
    AlertPreferences preferences;
    preferences.reminderMinutes = 0;
    model().setPrefs(preferences);
    pass();
    ASSERT_EQ(standing(), 1U);
    platform_.time.setWallClock(platform_.time.now() + SessionBoard::staleAfter + Seconds(1));
    pass(58);
    EXPECT_EQ(standing(), 1U);
    pass(1);
    EXPECT_TRUE(model().board().sessions().empty());
    EXPECT_EQ(standing(), 0U);
}

TEST_F(AppModelTest, aBacklogAtLaunchEndsInOneCalmPicture) {
    for (int i = 0; i < 40; ++i) {
        const Seconds age(1000.0 - 10 * i);
        dropClaude("Notification", std::to_string(i % 8), age);
        if (i % 8 < 4) dropClaude("PostToolUse", std::to_string(i % 8), age - Seconds(5));
    }
    dropCodexDone("finished");
    pass();
    // Sessions 4 to 7 still wait, and it is time to remind of each of them: the latest three are shown.
    EXPECT_EQ(model().board().waitingCount(), 4U);
    ASSERT_EQ(standing(), 3U);
    EXPECT_EQ(platform_.panels.all.size(), 3U);
    EXPECT_EQ(platform_.panels.standing()[0]->size, QSize(520, 96));
    EXPECT_EQ(platform_.announcer.spoken.size(), 3U);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
}

TEST_F(AppModelTest, aBacklogsFinishesTakeNoPlaceWhenDoneAlertsAreOff) {
    AlertPreferences stored;
    stored.alertWhenDone = false;
    stored.save(defaults_, "alertPreferences");
    for (int i = 0; i < 3; ++i)
        dropClaude("Notification", std::to_string(i), Seconds(5 - i));
    dropCodexDone("t");
    dropCodexDone("u");
    pass();
    ASSERT_EQ(standing(), 3U);
    for (const auto* const panel : platform_.panels.standing())
        EXPECT_EQ(panel->size, QSize(520, 96));
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
}

TEST_F(AppModelTest, aBacklogOfBothKindsSoundsAsWaiting) {
    dropCodexDone("first", Seconds(3));
    dropClaude("Notification", "s", Seconds(2));
    dropCodexDone("last", Seconds(1));
    pass();
    EXPECT_EQ(standing(), 3U);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
}

TEST_F(AppModelTest, aFinishExactlySixSecondsOldIsShownAtLaunch) {
    dropCodexDone("t", Seconds(6));
    pass();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->size, QSize(360, 64));
    EXPECT_EQ(played(), std::vector<std::string>{"Tink"});
}

TEST_F(AppModelTest, aFinishFromLongAgoIsNotShownAtLaunch) {
    dropCodexDone("old", Seconds(6.001));
    pass();
    EXPECT_EQ(standing(), 0U);
    EXPECT_TRUE(played().empty());
    EXPECT_EQ(model().board().sessions().size(), 1U);
}

TEST_F(AppModelTest, aBacklogIsSilentInQuietTime) {
    AlertPreferences stored;
    stored.quietUntil = platform_.time.now() + Seconds(60);
    stored.save(defaults_, "alertPreferences");
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(standing(), 0U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, openingAtLoginFollowsTheLoginItem) {
    EXPECT_FALSE(model().opensAtLogin());
    model().setOpensAtLogin(true);
    EXPECT_TRUE(platform_.loginItem.enabled);
    EXPECT_TRUE(model().opensAtLogin());
    platform_.loginItem.enabled = false;
    EXPECT_FALSE(model().opensAtLogin());
}

TEST_F(AppModelTest, aRefusedLoginItemIsToldAndClearedByTheNextSuccess) {
    platform_.loginItem.failure = "The folder is read-only.";
    model().setOpensAtLogin(true);
    EXPECT_EQ(model().connectError(), "Couldn't change “Open at login”: The folder is read-only.");
    EXPECT_FALSE(model().opensAtLogin());
    platform_.loginItem.failure = std::nullopt;
    model().setOpensAtLogin(true);
    EXPECT_EQ(model().connectError(), std::nullopt);
}

TEST_F(AppModelTest, aTestAlertShowsAndSoundsInQuietTimeAndIsNoSession) {
    pass();
    model().quietForAnHour();
    model().sendTestAlert();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
    EXPECT_TRUE(model().board().sessions().empty());
    EXPECT_EQ(platform_.announcer.spoken.at(0).toStdString(),
              "Claude is waiting for you, my-project · wants to use Bash");
}

TEST_F(AppModelTest, theTestAlertHasJustBegunToWaitAndUsesTheChosenSound) {
    AlertPreferences preferences;
    preferences.waitingSound = "Purr";
    preferences.doneSound = "Hero";
    model().setPrefs(preferences);
    pass();
    platform_.time.advance(milliseconds(700));
    model().sendTestAlert();
    EXPECT_EQ(played(), std::vector<std::string>{"Purr"});
    ASSERT_EQ(standing(), 1U);
    const auto* const banner =
        dynamic_cast<const WaitingBanner*>(platform_.panels.standing()[0]->content.get());
    ASSERT_NE(banner, nullptr);
    EXPECT_EQ(banner->waitedLabel(model().now()).toStdString(), "waiting 0:00");
    EXPECT_EQ(banner->waitedLabel(model().now() + Seconds(1)).toStdString(), "waiting 0:01");
}

TEST_F(AppModelTest, theTestAlertIsSilentWithSoundsOff) {
    AlertPreferences preferences;
    preferences.soundsOn = false;
    model().setPrefs(preferences);
    pass();
    model().sendTestAlert();
    EXPECT_EQ(standing(), 1U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, theTestAlertsButtonsOnlyCloseIt) {
    dropClaude("Notification", "s");
    pass();
    const SessionBoard board = model().board();
    for (const char* const button : {"Go to Terminal", "Snooze", "Close"}) {
        model().sendTestAlert();
        ASSERT_EQ(standing(), 2U);
        click(button);
        EXPECT_EQ(standing(), 1U) << button;
        EXPECT_EQ(model().board(), board) << button;
    }
    EXPECT_TRUE(platform_.applications.activated.empty());
}

TEST_F(AppModelTest, theOnboardingFlagIsStoredAtOnce) {
    model().setHasCompletedOnboarding(true);
    EXPECT_TRUE(defaults_.boolean("hasCompletedOnboarding"));
    EXPECT_TRUE(model().hasCompletedOnboarding());
}

TEST_F(AppModelTest, connectingAndRemovingAnAgentIsSeenAtOnce) {
    model().connectAgent(AgentKind::claude);
    EXPECT_TRUE(model().connected().at(AgentKind::claude));
    EXPECT_FALSE(model().connected().at(AgentKind::codex));
    EXPECT_EQ(model().connectError(), std::nullopt);
    EXPECT_EQ(model().lastBackup(), std::nullopt);
    model().disconnectAgent(AgentKind::claude);
    EXPECT_FALSE(model().connected().at(AgentKind::claude));
}

TEST_F(AppModelTest, aConnectThatChangesAFileTellsItsBackup) {
    test::writeFile(home_.path() / ".claude/settings.json", "{}");
    model().connectAgent(AgentKind::claude);
    ASSERT_TRUE(model().lastBackup().has_value());
    EXPECT_EQ(test::fileBytes(*model().lastBackup()), "{}");
}

TEST_F(AppModelTest, aBackupIsNamedByTheClockNotByTheLastPass) {
    const auto backupAt = [&](Date date) {
        platform_.time.setWallClock(date);
        test::writeFile(home_.path() / ".claude/settings.json", "{}");
        model().connectAgent(AgentKind::claude);
        return model().lastBackup().value_or("").filename().string();
    };
    pass();
    const Date passed = model().now();
    const std::string first = backupAt(passed + Seconds(1));
    const std::string second = backupAt(passed + Seconds(3));
    EXPECT_EQ(model().now(), passed);
    // Two seconds lie between the names, of the same length since neither had to evade the other.
    ASSERT_EQ(first.size(), second.size());
    EXPECT_EQ(std::stoi(second.substr(second.size() - 2)) - std::stoi(first.substr(first.size() - 2)), 2)
        << first << " " << second;
}

TEST_F(AppModelTest, anotherProgramsNotifyLineIsNamedAndTheLastBackupKept) {
    test::writeFile(home_.path() / ".claude/settings.json", "{}");
    model().connectAgent(AgentKind::claude);
    const auto backup = model().lastBackup();
    test::writeFile(home_.path() / ".codex/config.toml", "  notify = [\"other\"]\t\n");
    model().connectAgent(AgentKind::codex);
    EXPECT_EQ(
        model().connectError(),
        "Codex already sends notifications to another program (notify = [\"other\"]). Nothing was changed.");
    EXPECT_EQ(model().lastBackup(), backup);
    EXPECT_FALSE(model().connected().at(AgentKind::codex));

    model().disconnectAgent(AgentKind::claude);
    EXPECT_EQ(model().connectError(), std::nullopt);
}

TEST_F(AppModelTest, anUnreadableFileIsNamedInFull) {
    test::writeFile(home_.path() / ".claude/settings.json", "[]");
    model().connectAgent(AgentKind::claude);
    EXPECT_EQ(model().connectError(), (home_.path() / ".claude/settings.json").string() +
                                          " — settings.json is not valid JSON. Nothing was changed.");
    test::writeFile(home_.path() / ".codex/config.toml", "\xFF");
    model().connectAgent(AgentKind::codex);
    EXPECT_EQ(model().connectError(), (home_.path() / ".codex/config.toml").string() +
                                          " — config.toml is not UTF-8 text. Nothing was changed.");
}

TEST_F(AppModelTest, anyOtherFailureIsToldWithItsReason) {
    std::filesystem::create_directories(home_.path() / ".codex/config.toml");
    model().connectAgent(AgentKind::codex);
    ASSERT_TRUE(model().connectError().has_value());
    EXPECT_TRUE(model().connectError()->starts_with("Couldn't connect Codex: ")) << *model().connectError();
    EXPECT_GT(model().connectError()->size(), std::string("Couldn't connect Codex: ").size());
}

TEST_F(AppModelTest, aFailedRemovalIsToldWithItsReason) {
    test::writeFile(home_.path() / ".claude/settings.json", "not JSON");
    model().disconnectAgent(AgentKind::claude);
    ASSERT_TRUE(model().connectError().has_value());
    EXPECT_TRUE(model().connectError()->starts_with("Couldn't remove Corvane from Claude: "))
        << *model().connectError();
}

TEST_F(AppModelTest, everyChangeIsSignalled) {
    int changes = 0;
    QObject::connect(&model(), &AppModel::changed, [&] { ++changes; });
    pass();
    EXPECT_EQ(changes, 1);
    model().quietForAnHour();
    EXPECT_EQ(changes, 2);
    model().resumeAlerts();
    EXPECT_EQ(changes, 3);
    model().setHasCompletedOnboarding(true);
    EXPECT_EQ(changes, 4);
    model().refreshConnections();
    EXPECT_EQ(changes, 5);
}

TEST_F(AppModelTest, whatTheUserDoesIsSignalledOnceItCanBeRead) {
    dropClaude("Notification", "s");
    pass();
    const AgentSession session = model().board().sessions().at(0);
    int changes = 0;
    std::function<bool()> isDone;
    QObject::connect(&model(), &AppModel::changed, [&] {
        ++changes;
        EXPECT_TRUE(isDone()) << "change " << changes;
    });
    isDone = [&] { return model().board().sessions().at(0).snoozedUntil.has_value() && standing() == 0; };
    model().snooze(session);
    EXPECT_EQ(changes, 1);
    isDone = [&] { return model().connected().at(AgentKind::claude); };
    model().connectAgent(AgentKind::claude);
    EXPECT_EQ(changes, 2);
    isDone = [&] { return !model().connected().at(AgentKind::claude); };
    model().disconnectAgent(AgentKind::claude);
    EXPECT_EQ(changes, 3);
    isDone = [&] { return model().opensAtLogin(); };
    model().setOpensAtLogin(true);
    EXPECT_EQ(changes, 4);

    // Failures too.
    test::writeFile(home_.path() / ".claude/settings.json", "[]");
    isDone = [&] { return model().connectError().has_value(); };
    model().connectAgent(AgentKind::claude);
    EXPECT_EQ(changes, 5);
    platform_.loginItem.failure = "The folder is read-only.";
    isDone = [&] { return model().connectError().value_or("").ends_with("The folder is read-only."); };
    model().setOpensAtLogin(false);
    EXPECT_EQ(changes, 6);
}

TEST_F(AppModelTest, aListenerMayEndTheModel) {
    const std::vector<std::function<void(AppModel&)>> causes{
        [this](AppModel&) { platform_.time.advance(seconds(1)); },
        [this](AppModel&) { click("Snooze"); },
        [](AppModel& model) { model.setPrefs(AlertPreferences()); },
        [](AppModel& model) { model.quietForAnHour(); },
        [](AppModel& model) { model.setHasCompletedOnboarding(true); },
        [](AppModel& model) { model.connectAgent(AgentKind::claude); },
        [](AppModel& model) { model.disconnectAgent(AgentKind::claude); },
        [](AppModel& model) { model.setOpensAtLogin(true); },
    };
    for (std::size_t i = 0; i < causes.size(); ++i) {
        platform_.panels.all.clear();
        defaults_.values.clear();
        dropClaude("Notification", std::to_string(i));
        pass();
        ASSERT_EQ(standing(), 1U);
        QObject::connect(&model(), &AppModel::changed, [this] { model_.reset(); });
        causes[i](model());
        EXPECT_FALSE(model_.has_value()) << i;
        // Nothing of it goes on.
        platform_.time.advance(seconds(2));
        EXPECT_EQ(platform_.time.pendingCount(), 0U) << i;
    }
}

TEST_F(AppModelTest, realPayloadsTravelTheWholeRoad) {
    drop("claude", test::testData("agent-payloads/claude-Notification-permission_prompt.json"));
    pass();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(platform_.announcer.spoken.at(0).toStdString(),
              "Claude is waiting for you, project · Claude needs your permission");
    drop("claude", test::testData("agent-payloads/claude-PostToolUse-Bash.json"));
    pass();
    EXPECT_EQ(standing(), 0U);
    drop("codex", test::testData("agent-payloads/codex-agent-turn-complete-codex-tui.json"));
    pass();
    ASSERT_EQ(standing(), 1U);
    EXPECT_EQ(platform_.announcer.spoken.at(1).toStdString(), "Codex finished, project");
}

} // namespace
} // namespace corvane
