#include "Model/WaitWatch.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

class WaitWatchTest : public testing::Test {
  protected:
    static AgentSession waiting(const std::string& sessionID, Date lastEvent, const std::string& cwd = "/w") {
        AgentSession session;
        session.sessionID = sessionID;
        session.cwd = cwd;
        session.status = SessionStatus::waiting(EventKind::needsPermission, lastEvent);
        session.lastEvent = lastEvent;
        return session;
    }

    void runs(std::int64_t number, std::uint64_t started, const std::string& agent = "claude") {
        table.processes.push_back({{number, started}, agent, "/w"});
    }

    /// The identifiers of the sessions that ended.
    std::vector<std::string> ended(const std::vector<AgentSession>& sessions, Seconds after = Seconds(1)) {
        std::vector<std::string> ids;
        for (const AgentSession& session : watch.ended(sessions, now + after))
            ids.push_back(session.id());
        return ids;
    }

    const Date now{1'790'000'000, 0};
    recording::FakeAgentProcesses table;
    WaitWatch watch{table};
    using Ids = std::vector<std::string>;
};

TEST_F(WaitWatchTest, aSessionEndsOnceWithTheOnlyProcessThatCanBeItsOwn) {
    runs(7, 1);
    runs(8, 1, "codex");
    table.processes.push_back({{9, 1}, "claude", "/other"});
    const AgentSession session = waiting("s", now);
    EXPECT_EQ(ended({session}), Ids());
    EXPECT_EQ(ended({session}, Seconds(600)), Ids());
    table.processes.erase(table.processes.begin());
    EXPECT_EQ(ended({session}, Seconds(601)), Ids{"claude:s"});
    EXPECT_EQ(ended({session}, Seconds(602)), Ids());
}

TEST_F(WaitWatchTest, aReusedProcessIdIsAnotherProcess) {
    runs(7, 1);
    const AgentSession session = waiting("s", now);
    EXPECT_EQ(ended({session}), Ids());
    table.processes.clear();
    runs(7, 2);
    EXPECT_EQ(ended({session}), Ids{"claude:s"});
}

TEST_F(WaitWatchTest, withSeveralProcessesOrNoneNothingEnds) {
    const AgentSession none = waiting("none", now, "/nobody");
    const AgentSession several = waiting("several", now);
    const AgentSession nowhere = waiting("nowhere", now, "");
    runs(7, 1);
    runs(8, 1);
    EXPECT_EQ(ended({none, several, nowhere}), Ids());
    table.processes.pop_back();
    EXPECT_EQ(ended({none, several, nowhere}), Ids()) << "too late to tell";
    table.processes.clear();
    EXPECT_EQ(ended({none, several, nowhere}), Ids());
}

TEST_F(WaitWatchTest, aProcessFoundLongAfterThePromptIsNotKnownToHaveWaited) {
    runs(7, 1);
    const AgentSession fresh = waiting("fresh", now);
    const AgentSession old = waiting("old", now - Seconds(0.001));
    EXPECT_EQ(ended({fresh, old}, Seconds(5)), Ids());
    table.processes.clear();
    EXPECT_EQ(ended({fresh, old}, Seconds(5)), Ids{"claude:fresh"});
}

TEST_F(WaitWatchTest, aPromptFromTheFutureAfterTheClockWasSetBackIsNotFresh) {
    runs(7, 1);
    const AgentSession ahead = waiting("ahead", now + Seconds(6.001));
    const AgentSession barely = waiting("barely", now + Seconds(6));
    EXPECT_EQ(ended({ahead, barely}), Ids());
    table.processes.clear();
    EXPECT_EQ(ended({ahead, barely}), Ids{"claude:barely"});
}

TEST_F(WaitWatchTest, everyPromptIsExaminedAgain) {
    runs(7, 1);
    EXPECT_EQ(ended({waiting("s", now)}), Ids());
    // The session is resumed in another process, which asks the same at once.
    table.processes.clear();
    runs(8, 5);
    AgentSession again = waiting("s", now);
    again.lastEvent = now + Seconds(1);
    EXPECT_EQ(ended({again}, Seconds(2)), Ids());
    table.processes.clear();
    EXPECT_EQ(ended({again}, Seconds(3)), Ids{"claude:s"});
}

TEST_F(WaitWatchTest, onlyWaitingSessionsAreWatched) {
    runs(7, 1);
    AgentSession session = waiting("s", now);
    EXPECT_EQ(ended({session}), Ids());
    session.status = SessionStatus::running();
    table.processes.clear();
    EXPECT_EQ(ended({session}), Ids());
    session.status = SessionStatus::waiting(EventKind::needsInput, now);
    EXPECT_EQ(ended({session}, Seconds(60)), Ids()) << "what was known of the earlier wait is forgotten";
    const int looks = table.lookCount;
    EXPECT_EQ(ended({}), Ids());
    EXPECT_EQ(table.lookCount, looks);
}

} // namespace
} // namespace corvane
