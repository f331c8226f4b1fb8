#include "Agents/HookScript.h"
#include "App/Support/AppModelSupport.h"
#include "BannerViews.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::AppModelTest;

TEST_F(AppModelTest, openingAtLoginFollowsTheLoginItem) {
    EXPECT_FALSE(model().opensAtLogin());
    model().setOpensAtLogin(true);
    EXPECT_TRUE(platform_.loginItem.enabled);
    EXPECT_TRUE(model().opensAtLogin());
    platform_.loginItem.enabled = false;
    EXPECT_FALSE(model().opensAtLogin());
}

TEST_F(AppModelTest, aLoginItemErrorIsReportedAndClearedByTheNextSuccess) {
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
    ASSERT_EQ(visible(), 1U);
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
    ASSERT_EQ(visible(), 1U);
    const auto* const banner =
        dynamic_cast<const WaitingBanner*>(platform_.panels.visible()[0]->content.get());
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
    EXPECT_EQ(visible(), 1U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, theTestAlertsButtonsOnlyCloseIt) {
    dropClaude("Notification", "s");
    pass();
    const SessionBoard board = model().board();
    for (const char* const button : {"Go to Terminal", "Snooze", "Close"}) {
        model().sendTestAlert();
        ASSERT_EQ(visible(), 2U);
        click(button);
        EXPECT_EQ(visible(), 1U) << button;
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

TEST_F(AppModelTest, removingAnAgentEndsItsSessionsAndTheirRemindersOnly) {
    model().connectAgent(AgentKind::claude);
    model().connectAgent(AgentKind::codex);
    pass();
    dropClaude("Notification", "a");
    dropClaude("Notification", "b");
    dropCodexDone("c");
    pass();
    ASSERT_EQ(visible(), 3U);

    model().disconnectAgent(AgentKind::claude);
    EXPECT_EQ(visible(), 1U) << "the banner of Codex";
    ASSERT_EQ(model().board().sessions().size(), 1U);
    EXPECT_EQ(model().board().sessions().front().agent, AgentKind::codex);
    const std::size_t before = played().size();
    pass(200);
    EXPECT_EQ(played().size(), before) << "a reminder";

    model().disconnectAgent(AgentKind::codex);
    EXPECT_TRUE(model().board().sessions().empty());
}

TEST_F(AppModelTest, anOpenConversationOfARemovedAgentRaisesNoAlertUntilItIsConnectedAgain) {
    model().connectAgent(AgentKind::codex);
    pass();
    model().disconnectAgent(AgentKind::codex);
    dropCodexDone("a");
    dropClaude("Notification", "b");
    pass();
    EXPECT_EQ(visible(), 1U) << "the banner of Claude";
    ASSERT_EQ(model().board().sessions().size(), 1U);
    EXPECT_EQ(model().board().sessions().front().agent, AgentKind::claude);

    model().connectAgent(AgentKind::codex);
    dropCodexDone("a");
    pass();
    EXPECT_EQ(visible(), 2U);
}

TEST_F(AppModelTest, aRemovedAgentAlertsAgainOnceAnotherProgramHasPutItsEntriesBack) {
    const std::filesystem::path settings = home_.path() / ".claude/settings.json";
    model().connectAgent(AgentKind::claude);
    pass();
    const std::string entries = test::fileBytes(settings).value_or("");
    model().disconnectAgent(AgentKind::claude);
    dropClaude("Notification", "a");
    pass();
    ASSERT_EQ(visible(), 0U);

    test::writeFile(settings, entries);
    dropClaude("Notification", "b");
    pass();
    EXPECT_EQ(visible(), 1U);
    EXPECT_EQ(model().listedWaitingCount(), 1) << "the icon";
}

TEST_F(AppModelTest, aRemovalThatFailsLeavesTheSessions) {
    pass();
    dropClaude("Notification", "a");
    pass();
    test::writeFile(home_.path() / ".claude/settings.json", "not JSON");
    model().disconnectAgent(AgentKind::claude);
    EXPECT_EQ(visible(), 1U);
    EXPECT_EQ(model().board().sessions().size(), 1U);
}

TEST_F(AppModelTest, aConnectThatChangesAFileReportsItsBackup) {
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
    // The names differ by two seconds and have the same length, since neither needed a suffix.
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

TEST_F(AppModelTest, anyOtherFailureIsReportedWithItsReason) {
    std::filesystem::create_directories(home_.path() / ".codex/config.toml");
    model().connectAgent(AgentKind::codex);
    ASSERT_TRUE(model().connectError().has_value());
    EXPECT_TRUE(model().connectError()->starts_with("Couldn't connect Codex: ")) << *model().connectError();
    EXPECT_GT(model().connectError()->size(), std::string("Couldn't connect Codex: ").size());
}

TEST_F(AppModelTest, aFailedRemovalIsReportedWithItsReason) {
    test::writeFile(home_.path() / ".claude/settings.json", "not JSON");
    model().disconnectAgent(AgentKind::claude);
    ASSERT_TRUE(model().connectError().has_value());
    EXPECT_TRUE(model().connectError()->starts_with("Couldn't remove Corvane from Claude: "))
        << *model().connectError();
}

TEST_F(AppModelTest, atTheStartTheHookOfAConnectedAgentIsRepaired) {
    ASSERT_FALSE(AgentConnector(home_.path(), paths_).connect(AgentKind::claude, platform_.time.now()));
    std::filesystem::remove_all(paths_.support);
    model();
    EXPECT_EQ(test::fileBytes(paths_.hookScript()), HookScript::contents);
    EXPECT_EQ(model().connectError(), std::nullopt);
}

TEST_F(AppModelTest, atTheStartNoHookIsWrittenForAgentsThatAreNotConnected) {
    model();
    EXPECT_FALSE(std::filesystem::exists(paths_.hookScript()));
}

TEST_F(AppModelTest, aFailedRepairIsReportedUntilTheNextSuccess) {
    ASSERT_FALSE(AgentConnector(home_.path(), paths_).connect(AgentKind::claude, platform_.time.now()));
    std::filesystem::remove_all(paths_.support);
    test::writeFile(paths_.support, "in the way");
    ASSERT_TRUE(model().connectError().has_value());
    EXPECT_TRUE(model().connectError()->starts_with("Couldn't repair the hook that connected agents call: "))
        << *model().connectError();
    std::filesystem::remove(paths_.support);
    model().connectAgent(AgentKind::claude);
    EXPECT_EQ(model().connectError(), std::nullopt);
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

TEST_F(AppModelTest, theUsersChangesAreSignalledOnceTheyCanBeRead) {
    dropClaude("Notification", "s");
    pass();
    const AgentSession session = model().board().sessions().at(0);
    int changes = 0;
    std::function<bool()> isDone;
    QObject::connect(&model(), &AppModel::changed, [&] {
        ++changes;
        EXPECT_TRUE(isDone()) << "change " << changes;
    });
    isDone = [&] { return model().board().sessions().at(0).snoozedUntil.has_value() && visible() == 0; };
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

TEST_F(AppModelTest, aListenerMayDestroyTheModel) {
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
        ASSERT_EQ(visible(), 1U);
        QObject::connect(&model(), &AppModel::changed, [this] { model_.reset(); });
        causes[i](model());
        EXPECT_FALSE(model_.has_value()) << i;
        // Nothing continues after its end.
        platform_.time.advance(seconds(2));
        EXPECT_EQ(platform_.time.pendingCount(), 0U) << i;
    }
}

} // namespace
} // namespace corvane
