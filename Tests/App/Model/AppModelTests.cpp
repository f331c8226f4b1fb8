#include "App/Support/AppModelSupport.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::AppModelTest;

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
              (std::unordered_map<AgentKind, bool>{{AgentKind::claude, false}, {AgentKind::codex, false}}));
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
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->size, QSize(520, 96));
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
    EXPECT_EQ(model().board().waitingCount(), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(paths_.events()));
}

TEST_F(AppModelTest, theBannerIsDismissedWhenTheAgentWorksAgain) {
    dropClaude("Notification", "s");
    pass();
    dropClaude("PostToolUse", "s");
    pass();
    EXPECT_EQ(visible(), 0U);
    EXPECT_EQ(model().board().waitingCount(), 0U);
}

TEST_F(AppModelTest, eventsOfOnePassAreAppliedInOrder) {
    dropClaude("PostToolUse", "s");
    dropClaude("Notification", "s", Seconds(0.002));
    pass();
    EXPECT_EQ(model().board().waitingCount(), 0U);
    EXPECT_EQ(visible(), 0U);
}

TEST_F(AppModelTest, longWorkOfClaudeEndsWithADoneBannerForSixSeconds) {
    dropClaude("UserPromptSubmit", "s", Seconds(21));
    dropClaude("Stop", "s");
    pass();
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->size, QSize(360, 64));
    EXPECT_EQ(played(), std::vector<std::string>{"Tink"});
    platform_.time.advance(milliseconds(5999));
    EXPECT_EQ(visible(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(visible(), 0U);
}

TEST_F(AppModelTest, withoutDoneAlertsAFinishedAgentIsSilent) {
    AlertPreferences preferences;
    preferences.alertWhenDone = false;
    model().setPrefs(preferences);
    dropCodexDone("t");
    pass();
    EXPECT_EQ(visible(), 0U);
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

TEST_F(AppModelTest, withSoundsOffOnlyTheBannerIsShown) {
    AlertPreferences preferences;
    preferences.soundsOn = false;
    model().setPrefs(preferences);
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(visible(), 1U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, quietTimeSilencesAlertsButNotDismissals) {
    dropClaude("Notification", "a");
    pass();
    ASSERT_EQ(visible(), 1U);

    AlertPreferences preferences = model().prefs();
    preferences.quietUntil = model().now() + Seconds(60);
    model().setPrefs(preferences);
    dropClaude("Notification", "b");
    dropCodexDone("t");
    dropClaude("PostToolUse", "a");
    pass();
    EXPECT_EQ(visible(), 0U);
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(model().board().waitingCount(), 1U);
}

TEST_F(AppModelTest, afterQuietTimeTheNextReminderShows) {
    pass();
    model().quietForAnHour();
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(visible(), 0U);
    pass(60);
    model().resumeAlerts();
    EXPECT_EQ(model().prefs().quietUntil, std::nullopt);
    pass(58);
    EXPECT_EQ(visible(), 0U);
    pass(1);
    EXPECT_EQ(visible(), 1U);
    EXPECT_EQ(played().size(), 1U);
}

TEST_F(AppModelTest, quietTimeEndsExactlyOnTime) {
    AlertPreferences preferences;
    pass();
    preferences.quietUntil = model().now() + Seconds(1);
    model().setPrefs(preferences);
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(visible(), 1U);
}

TEST_F(AppModelTest, anHourOfQuietCountsFromTheLastPassAndIsStored) {
    // No double holds this fraction, and dates are stored as one.
    platform_.time.advance(milliseconds(333));
    pass();
    const Date passed = model().now();
    platform_.time.advance(milliseconds(700));
    model().quietForAnHour();
    const std::optional<Date> until = model().prefs().quietUntil;
    ASSERT_TRUE(until);
    EXPECT_NEAR((*until - passed).count(), 3600, 1e-7);
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
    EXPECT_EQ(visible(), 1U);
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
    EXPECT_EQ(visible(), 0U);
    EXPECT_EQ(model().board().sessions().at(0).snoozedUntil, model().now() + Seconds(300));
    pass(299);
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(visible(), 0U);
    pass(1);
    EXPECT_EQ(played().size(), 2U);
    EXPECT_EQ(visible(), 1U);
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
    EXPECT_EQ(visible(), 0U);
    EXPECT_EQ(platform_.applications.activated, std::vector<std::string>{"com.mitchellh.ghostty"});
}

TEST_F(AppModelTest, jumpingToAnUnknownTerminalDismissesAndLooksForTheAgentsProcess) {
    const auto file = paths_.events() / "1-1.event";
    test::writeFile(file, "corvane-event 1\nsource=claude\nterm=tmux\n---\n"
                          "{\"hook_event_name\":\"Notification\",\"cwd\":\"/w/shop\"}");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(visible(), 0U);
    EXPECT_TRUE(platform_.applications.activated.empty());
    EXPECT_EQ(platform_.applications.searched,
              (std::vector<std::pair<std::string, std::string>>{{"claude", "/w/shop"}}));
}

TEST_F(AppModelTest, jumpingPassesOnAllThatIsKnownOfTheTerminal) {
    dropClaude("Notification", "s");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(platform_.applications.last,
              (Terminal{"com.mitchellh.ghostty", "ghostty", "claude", "/w/shop"}));
}

TEST_F(AppModelTest, aMissingTerminalIsRememberedUntilItIsFoundOrTheSessionEnds) {
    dropClaude("Notification", "s");
    dropClaude("Notification", "other");
    pass();
    int changes = 0;
    QObject::connect(&model(), &AppModel::changed, [&] { ++changes; });
    const AgentSession session = model().board().sessions().at(0);
    platform_.applications.reportsAtOnce = false;
    model().jump(session);
    EXPECT_FALSE(model().isTerminalMissing("claude:s"));
    platform_.applications.pending.at(0)(false);
    EXPECT_TRUE(model().isTerminalMissing("claude:s"));
    EXPECT_FALSE(model().isTerminalMissing("claude:other"));
    EXPECT_EQ(changes, 1);

    platform_.applications.reportsAtOnce = true;
    model().jump(session);
    EXPECT_FALSE(model().isTerminalMissing("claude:s"));
    EXPECT_EQ(changes, 2);
    platform_.applications.isFound = false;
    model().jump(session);
    EXPECT_TRUE(model().isTerminalMissing("claude:s"));
    dropClaude("SessionEnd", "s");
    pass();
    EXPECT_FALSE(model().isTerminalMissing("claude:s"));
    dropClaude("Notification", "s");
    pass();
    EXPECT_FALSE(model().isTerminalMissing("claude:s")) << "a new session of that name";

    model().sendTestAlert();
    click("Go to Terminal");
    EXPECT_FALSE(model().isTerminalMissing("claude:test")) << "it has none";
}

TEST_F(AppModelTest, theNextBannerSaysThatTheTerminalWasNotFound) {
    const auto toolTip = [this] {
        return test::buttonOf(*platform_.panels.visible().front()->content, "Go to Terminal").toolTip();
    };
    platform_.applications.isFound = false;
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(toolTip(), QString());
    click("Go to Terminal");
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(toolTip(), QStringLiteral("Terminal not found"));
    platform_.applications.isFound = true;
    click("Go to Terminal");
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(toolTip(), QString());
}

TEST_F(AppModelTest, aReportAfterTheModelsDestructionIsIgnored) {
    dropClaude("Notification", "s");
    pass();
    platform_.applications.reportsAtOnce = false;
    click("Go to Terminal");
    model_.reset();
    platform_.applications.pending.at(0)(false);
}

TEST_F(AppModelTest, anAgentThatDiesWhileItWaitsEndsItsSession) {
    platform_.agentProcesses.processes = {{{7, 1}, "claude", "/w/shop"}};
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(visible(), 1U);
    pass(3);
    EXPECT_EQ(visible(), 1U);
    platform_.agentProcesses.processes.clear();
    pass();
    EXPECT_EQ(visible(), 0U);
    EXPECT_TRUE(model().board().sessions().empty());
    EXPECT_EQ(played().size(), 1U);
}

TEST_F(AppModelTest, noReminderIsShownForAnAgentThatHasDied) {
    platform_.agentProcesses.processes = {{{7, 1}, "claude", "/w/shop"}};
    dropClaude("Notification", "s");
    pass();
    click("Snooze");
    platform_.agentProcesses.processes.clear();
    const std::size_t panels = platform_.panels.all.size();
    pass(301);
    EXPECT_EQ(platform_.panels.all.size(), panels);
    EXPECT_EQ(played().size(), 1U);
}

TEST_F(AppModelTest, withoutAWaitingSessionNoProcessIsExamined) {
    platform_.agentProcesses.processes = {{{7, 1}, "claude", "/w/shop"}};
    dropClaude("UserPromptSubmit", "s");
    dropCodexDone("done");
    pass(5);
    EXPECT_EQ(platform_.agentProcesses.lookCount, 0);
    dropClaude("Notification", "s");
    pass(10);
    EXPECT_EQ(platform_.agentProcesses.lookCount, 11) << "once for what runs, and once per pass";
    dropClaude("PostToolUse", "s");
    pass(10);
    EXPECT_EQ(platform_.agentProcesses.lookCount, 11);
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

TEST_F(AppModelTest, pruningDismissesTheBannerOfAForgottenSession) {
    dropClaude("Notification", "s");
    AlertPreferences preferences;
    preferences.reminderMinutes = 0;
    model().setPrefs(preferences);
    pass();
    ASSERT_EQ(visible(), 1U);
    platform_.time.setWallClock(platform_.time.now() + SessionBoard::staleAfter + Seconds(1));
    pass(58);
    EXPECT_EQ(visible(), 1U);
    pass(1);
    EXPECT_TRUE(model().board().sessions().empty());
    EXPECT_EQ(visible(), 0U);
}

TEST_F(AppModelTest, realPayloadsAreHandledEndToEnd) {
    drop("claude", test::testData("agent-payloads/claude-Notification-permission_prompt.json"));
    pass();
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(platform_.announcer.spoken.at(0).toStdString(),
              "Claude is waiting for you, project · Claude needs your permission");
    drop("claude", test::testData("agent-payloads/claude-PostToolUse-Bash.json"));
    pass();
    EXPECT_EQ(visible(), 0U);
    drop("codex", test::testData("agent-payloads/codex-agent-turn-complete-codex-tui.json"));
    pass();
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(platform_.announcer.spoken.at(1).toStdString(), "Codex finished, project");
}

} // namespace
} // namespace corvane
