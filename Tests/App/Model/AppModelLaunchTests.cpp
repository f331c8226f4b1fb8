#include "App/Support/AppModelSupport.h"

#include <string>
#include <vector>

namespace corvane {
namespace {

using test::AppModelTest;

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

} // namespace
} // namespace corvane
