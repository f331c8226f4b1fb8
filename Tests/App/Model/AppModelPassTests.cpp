// How one pass of the loop handles many events: what nobody could see is skipped.

#include "App/Support/AppModelSupport.h"

#include <string>
#include <vector>

namespace corvane {
namespace {

using test::AppModelTest;

TEST_F(AppModelTest, theFirstPassIsLikeEveryOther) {
    // A finish and a question from long before the start, and a question that was answered since.
    dropCodexDone("finished", Seconds(3600));
    dropClaude("Notification", "waits", Seconds(600));
    dropClaude("Notification", "answered", Seconds(500));
    dropClaude("PostToolUse", "answered", Seconds(400));
    pass();
    ASSERT_EQ(visible(), 2U);
    EXPECT_EQ(platform_.panels.visible()[0]->size, QSize(520, 96));
    EXPECT_EQ(platform_.panels.visible()[1]->size, QSize(360, 64));
    EXPECT_EQ(played(), (std::vector<std::string>{"Glass", "Tink"}));
    EXPECT_EQ(model().board().waitingCount(), 1U);
}

TEST_F(AppModelTest, aReminderThatIsDueAtTheStartRefreshesTheBannerInPlace) {
    dropClaude("Notification", "s", Seconds(600));
    pass();
    ASSERT_EQ(platform_.panels.all.size(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->contentCount, 1);
    EXPECT_EQ(platform_.announcer.spoken.size(), 1U);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
    EXPECT_EQ(model().board().sessions().at(0).lastAlerted, model().now());
}

TEST_F(AppModelTest, aStormCreatesNoMoreWindowsThanAreVisible) {
    pass();
    for (int i = 0; i < 150; ++i)
        dropClaude("Notification", std::to_string(i), Seconds(0.5 - 0.001 * i));
    pass();
    ASSERT_EQ(platform_.panels.all.size(), BannerController::maxBanners);
    EXPECT_EQ(visible(), BannerController::maxBanners);
    EXPECT_EQ(platform_.announcer.spoken.size(), BannerController::maxBanners);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
    // The newest is on top, and they were shown one after the other.
    EXPECT_EQ(platform_.panels.visible()[0], platform_.panels.all[2].get());
    EXPECT_EQ(platform_.panels.visible()[2], platform_.panels.all[0].get());
}

TEST_F(AppModelTest, aBannerThatIsShownAndDismissedWithinAPassGetsNoWindowAndNoSound) {
    pass();
    dropClaude("Notification", "s", Seconds(0.5));
    dropClaude("PostToolUse", "s");
    pass();
    EXPECT_TRUE(platform_.panels.all.empty());
    EXPECT_TRUE(platform_.announcer.spoken.empty());
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, aBannerThatIsDismissedAndShownAgainWithinAPassIsANewOne) {
    dropClaude("Notification", "s");
    pass();
    dropClaude("PostToolUse", "s", Seconds(-0.5));
    dropClaude("Notification", "s", Seconds(-0.6));
    pass();
    ASSERT_EQ(platform_.panels.all.size(), 2U);
    EXPECT_EQ(platform_.panels.all[0]->fadeOuts.size(), 1U);
    EXPECT_EQ(visible(), 1U);
    EXPECT_EQ(played().size(), 2U);
}

TEST_F(AppModelTest, aBannerThatIsRefreshedManyTimesWithinAPassIsRefreshedOnce) {
    dropClaude("Notification", "s");
    pass();
    for (int i = 0; i < 20; ++i)
        dropClaude("Notification", "s", Seconds(-0.1 - 0.01 * i));
    pass();
    ASSERT_EQ(platform_.panels.all.size(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->contentCount, 2);
    EXPECT_EQ(platform_.announcer.spoken.size(), 2U);
    EXPECT_EQ(played().size(), 2U);
}

TEST_F(AppModelTest, aPassOfBothKindsPlaysEachSoundOnceAndTheSameSoundOnlyOnce) {
    pass();
    for (const char* const session : {"a", "b"}) {
        dropCodexDone(session, Seconds(0.5));
        dropClaude("Notification", session, Seconds(0.2));
    }
    pass();
    EXPECT_EQ(played(), (std::vector<std::string>{"Glass", "Tink"}));

    AlertPreferences same = model().prefs();
    same.doneSound = same.waitingSound;
    model().setPrefs(same);
    dropCodexDone("c", Seconds(0.5));
    dropClaude("Notification", "c", Seconds(0.2));
    pass();
    EXPECT_EQ(played(), (std::vector<std::string>{"Glass", "Tink", "Glass"}));
}

TEST_F(AppModelTest, aBacklogIsSilentInQuietTime) {
    AlertPreferences stored;
    stored.quietUntil = platform_.time.now() + Seconds(60);
    stored.save(defaults_, "alertPreferences");
    dropClaude("Notification", "s");
    pass();
    EXPECT_EQ(visible(), 0U);
    EXPECT_TRUE(played().empty());
}

TEST_F(AppModelTest, finishesTakeNoBannersPlaceWhenDoneAlertsAreOff) {
    AlertPreferences stored;
    stored.alertWhenDone = false;
    stored.save(defaults_, "alertPreferences");
    for (int i = 0; i < 3; ++i)
        dropClaude("Notification", std::to_string(i), Seconds(5 - i));
    dropCodexDone("t");
    dropCodexDone("u");
    pass();
    ASSERT_EQ(visible(), 3U);
    for (const auto* const panel : platform_.panels.visible())
        EXPECT_EQ(panel->size, QSize(520, 96));
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});
}

} // namespace
} // namespace corvane
