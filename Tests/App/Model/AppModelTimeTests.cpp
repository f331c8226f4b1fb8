// The wall clock changes while sessions wait, work and rest: the user sets it, or the machine was suspended.

#include "App/Support/AppModelSupport.h"
#include "Sessions/AlertText.h"

#include <string>
#include <vector>

namespace corvane {
namespace {

using test::AppModelTest;

constexpr Seconds day{86'400};

class ClockTest : public AppModelTest {
  protected:
    /// Two sessions that wait, one that works and one that has finished, at the time given by the fake clock.
    void startSessions() {
        pass();
        dropClaude("Notification", "a", Seconds(0.4));
        dropClaude("Notification", "b", Seconds(0.3));
        dropClaude("UserPromptSubmit", "works", Seconds(0.2));
        dropCodexDone("rests", Seconds(0.1));
        pass();
        ASSERT_EQ(visible(), 3U);
        ASSERT_EQ(played().size(), 2U);
    }

    void moveClock(Seconds span) { platform_.time.setWallClock(platform_.time.now() + span); }

    void expectNothingNegative() {
        for (const AgentSession& session : model().board().sorted())
            EXPECT_EQ(AlertText::statusLine(session, model().now()).find('-'), std::string::npos);
    }
};

TEST_F(ClockTest, setBackByADayItRemindsOfNothingTwiceAndShowsNothingNegative) {
    startSessions();
    moveClock(-day);
    pass(600);
    expectNothingNegative();
    EXPECT_EQ(played().size(), 2U);
    EXPECT_EQ(model().board().sessions().size(), 4U) << "nothing has expired";
    // New prompts alert as usual.
    dropClaude("Notification", "c");
    pass();
    EXPECT_EQ(played().size(), 3U);
    EXPECT_EQ(AlertText::statusLine(model().board().sorted().back(), model().now()), "Done just now");
}

TEST_F(ClockTest, setBackAndThenCorrectedItRemindsOfEachOnce) {
    startSessions();
    moveClock(-day);
    pass(30);
    moveClock(day);
    pass(88);
    EXPECT_EQ(played().size(), 2U);
    pass(1);
    EXPECT_EQ(played().size(), 3U) << "two minutes after the alert: a sound for both";
}

TEST_F(ClockTest, setForwardByAYearItRemindsOnceAndThenForgets) {
    startSessions();
    const std::size_t spoken = platform_.announcer.spoken.size();
    moveClock(365 * day);
    pass();
    expectNothingNegative();
    EXPECT_EQ(played().size(), 3U);
    EXPECT_EQ(platform_.announcer.spoken.size(), spoken + 2);
    pass(60);
    EXPECT_EQ(played().size(), 3U);
    EXPECT_TRUE(model().board().sessions().empty()) << "they have been silent for more than half a day";
    EXPECT_EQ(visible(), 0U);
}

TEST_F(ClockTest, afterANightsSuspendEachWaitingSessionRemindsOnce) {
    startSessions();
    const std::size_t spoken = platform_.announcer.spoken.size();
    moveClock(Seconds(8 * 3600));
    pass();
    EXPECT_EQ(played().size(), 3U) << "one sound for all";
    EXPECT_EQ(platform_.announcer.spoken.size(), spoken + 2) << "and each is spoken once";
    EXPECT_EQ(model().board().waitingCount(), 2U);
    EXPECT_TRUE(AlertText::statusLine(model().board().sorted().front(), model().now())
                    .starts_with("Waiting for you \u00B7 8:00:"));
    pass(119);
    EXPECT_EQ(played().size(), 3U);
    pass(1);
    EXPECT_EQ(played().size(), 4U) << "then at the usual interval";
    EXPECT_EQ(model().board().sessions().size(), 3U) << "the finished one is forgotten";
}

TEST_F(ClockTest, changingAllTheTimeItRemindsNoMoreOftenThanTheTimeThatItShows) {
    startSessions();
    for (int i = 0; i < 120; ++i) {
        moveClock(Seconds(i % 2 == 0 ? 60 : -60));
        pass();
    }
    EXPECT_LE(played().size(), 4U);
    expectNothingNegative();
}

TEST_F(ClockTest, aSessionFromTheFutureHasWaitedForNoTime) {
    pass();
    dropClaude("Notification", "s", -day);
    pass(300);
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(AlertText::statusLine(model().board().sessions().at(0), model().now()),
              "Waiting for you \u00B7 0:00");
}

TEST_F(ClockTest, aFileWithAnImpossibleDateIsAnOrdinaryEvent) {
    pass();
    const Seconds century(100.0 * 365 * 86'400);
    const std::vector<Seconds> ages{century, -century, day, -day};
    for (std::size_t i = 0; i < ages.size(); ++i) {
        dropClaude("Notification", "w" + std::to_string(i), ages[i]);
        dropCodexDone("d" + std::to_string(i), ages[i]);
    }
    pass();
    EXPECT_EQ(model().board().sessions().size(), 8U);
    expectNothingNegative();
    pass(60);
    EXPECT_EQ(model().board().sessions().size(), 4U) << "those from the past are forgotten";
    expectNothingNegative();
}

TEST_F(ClockTest, quietTimeEndsWhenTheClockHasPassedItsEnd) {
    startSessions();
    model().quietForAnHour();
    moveClock(Seconds(3 * 3600));
    pass();
    EXPECT_FALSE(model().quietUntil());
    EXPECT_EQ(played().size(), 3U) << "the reminder that was held back";
}

} // namespace
} // namespace corvane
