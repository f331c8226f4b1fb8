#include "SessionSupport.h"
#include "Sessions/SessionBoard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::at;
using test::makeEvent;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr EventKind prompts[] = {EventKind::needsPermission, EventKind::needsInput};

const AgentSession& only(const SessionBoard& board) {
    EXPECT_EQ(board.sessions().size(), 1U);
    return board.sessions().at(0);
}

std::vector<std::string> ids(const std::vector<AgentSession>& sessions) {
    std::vector<std::string> result;
    for (const AgentSession& session : sessions)
        result.push_back(session.id());
    return result;
}

SessionBoard boardAfter(std::initializer_list<AgentEvent> events) {
    SessionBoard board;
    for (const AgentEvent& event : events)
        board.apply(event);
    return board;
}

TEST(SessionBoard, startsEmptyWithThePublishedTimes) {
    const SessionBoard board;
    EXPECT_THAT(board.sessions(), IsEmpty());
    EXPECT_THAT(board.sorted(), IsEmpty());
    EXPECT_EQ(board.waitingCount(), 0U);
    EXPECT_EQ(SessionBoard::doneRetention, Seconds(1800));
    EXPECT_EQ(SessionBoard::staleAfter, Seconds(43200));
    EXPECT_EQ(AgentKind::claude.descriptor().minWorkForDoneAlert, Seconds(20));
    EXPECT_EQ(AgentKind::codex.descriptor().minWorkForDoneAlert, std::nullopt);
}

TEST(SessionBoard, endedRemovesTheSessionAndDismisses) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::running, 0),
                                     makeEvent(AgentKind::claude, "b", EventKind::needsInput, 1),
                                     makeEvent(AgentKind::claude, "c", EventKind::running, 2)});
    EXPECT_EQ(board.apply(makeEvent(AgentKind::claude, "b", EventKind::ended, 3)),
              BoardEffect::dismiss("claude:b"));
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:a", "claude:c"));
}

TEST(SessionBoard, endedOfAnUnknownSessionDismissesAndChangesNothing) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::needsInput, 0)});
    const SessionBoard before = board;
    EXPECT_EQ(board.apply(makeEvent(AgentKind::claude, "x", EventKind::ended, 1)),
              BoardEffect::dismiss("claude:x"));
    EXPECT_EQ(board.apply(makeEvent(AgentKind::codex, "x", EventKind::ended, 1)),
              BoardEffect::dismiss("codex:x"));
    EXPECT_EQ(board, before);
}

TEST(SessionBoard, twoAgentsMayUseTheSameSessionIdentifier) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::needsInput, 0),
                                     makeEvent(AgentKind::codex, "a", EventKind::needsInput, 1)});
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:a", "codex:a"));
    board.snooze("codex:a", at(9));
    EXPECT_EQ(board.sessions().at(0).snoozedUntil, std::nullopt);
    EXPECT_EQ(board.sessions().at(1).snoozedUntil, at(9));
    board.apply(makeEvent(AgentKind::claude, "a", EventKind::ended, 2));
    EXPECT_THAT(ids(board.sessions()), ElementsAre("codex:a"));
}

TEST(SessionBoard, aNewSessionTakesEverythingFromItsEvent) {
    AgentEvent event = makeEvent(EventKind::running, 5, "not shown");
    event.source = AgentKind::codex;
    event.terminalBundleID = "com.apple.Terminal";
    event.terminalProgram = "Apple_Terminal";
    SessionBoard board;
    EXPECT_EQ(board.apply(event), std::nullopt);

    AgentSession expected;
    expected.agent = AgentKind::codex;
    expected.sessionID = "s1";
    expected.cwd = "/w/shop";
    expected.terminalBundleID = "com.apple.Terminal";
    expected.terminalProgram = "Apple_Terminal";
    expected.status = SessionStatus::running();
    expected.lastEvent = at(5);
    expected.runningSince = at(5);
    EXPECT_EQ(only(board), expected);
}

TEST(SessionBoard, emptyContextFieldsEraseNothingAndOthersReplace) {
    AgentEvent event = makeEvent(EventKind::running, 0);
    event.terminalBundleID = "bundle";
    event.terminalProgram = "program";
    SessionBoard board = boardAfter({event});

    AgentEvent empty = makeEvent(EventKind::needsInput, 1);
    empty.cwd.clear();
    board.apply(empty);
    EXPECT_EQ(only(board).cwd, "/w/shop");
    EXPECT_EQ(only(board).terminalBundleID, "bundle");
    EXPECT_EQ(only(board).terminalProgram, "program");
    EXPECT_EQ(only(board).lastEvent, at(1));

    AgentEvent moved = makeEvent(EventKind::running, 2);
    moved.cwd = "/w/other";
    moved.terminalBundleID = "bundle 2";
    moved.terminalProgram = "program 2";
    board.apply(moved);
    EXPECT_EQ(only(board).cwd, "/w/other");
    EXPECT_EQ(only(board).terminalBundleID, "bundle 2");
    EXPECT_EQ(only(board).terminalProgram, "program 2");
}

TEST(SessionBoard, lastEventFollowsTheEventAlsoBackwards) {
    const SessionBoard board =
        boardAfter({makeEvent(EventKind::running, 10), makeEvent(EventKind::running, 3)});
    EXPECT_EQ(only(board).lastEvent, at(3));
}

TEST(SessionBoard, aPromptMakesTheSessionWaitAndShowsIt) {
    for (const EventKind kind : prompts) {
        for (const EventKind before : {EventKind::running, EventKind::finished}) {
            SessionBoard board = boardAfter({makeEvent(EventKind::running, 0), makeEvent(before, 30, "old")});
            const std::optional<Date> runningSince = only(board).runningSince;
            const auto effect = board.apply(makeEvent(kind, 40, "may I?"));
            EXPECT_EQ(only(board).status, SessionStatus::waiting(kind, at(40)));
            EXPECT_EQ(only(board).message, "may I?");
            EXPECT_EQ(only(board).lastAlerted, at(40));
            EXPECT_EQ(only(board).runningSince, runningSince);
            EXPECT_EQ(effect, BoardEffect::showWaiting(only(board)));
        }
    }
}

TEST(SessionBoard, aPromptOfAnUnknownSessionShowsItAtOnce) {
    SessionBoard board;
    const auto effect = board.apply(makeEvent(EventKind::needsPermission, 7, "first"));
    EXPECT_EQ(only(board).status, SessionStatus::waiting(EventKind::needsPermission, at(7)));
    EXPECT_EQ(only(board).message, "first");
    EXPECT_EQ(only(board).runningSince, at(7));
    EXPECT_EQ(effect, BoardEffect::showWaiting(only(board)));
}

TEST(SessionBoard, aRepeatedPromptKeepsWhenTheWaitBegan) {
    for (const EventKind kind : prompts) {
        SessionBoard board = boardAfter({makeEvent(kind, 0, "one")});
        board.snooze("claude:s1", at(900));
        const auto effect = board.apply(makeEvent(kind, 300, "two"));
        EXPECT_EQ(only(board).status, SessionStatus::waiting(kind, at(0)));
        EXPECT_EQ(only(board).message, "two");
        EXPECT_EQ(only(board).lastAlerted, at(300));
        EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
        EXPECT_EQ(effect, BoardEffect::showWaiting(only(board)));
    }
}

TEST(SessionBoard, aPromptForAnotherReasonRestartsTheWait) {
    for (const EventKind kind : prompts) {
        const EventKind other =
            kind == EventKind::needsInput ? EventKind::needsPermission : EventKind::needsInput;
        SessionBoard board = boardAfter({makeEvent(kind, 0, "one")});
        board.snooze("claude:s1", at(900));
        const auto effect = board.apply(makeEvent(other, 300, "two"));
        EXPECT_EQ(only(board).status, SessionStatus::waiting(other, at(300)));
        EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
        EXPECT_EQ(only(board).lastAlerted, at(300));
        EXPECT_EQ(effect, BoardEffect::showWaiting(only(board)));
    }
}

TEST(SessionBoard, anEmptyPromptErasesThePreviousMessage) {
    for (const EventKind kind : prompts) {
        const SessionBoard board = boardAfter({makeEvent(kind, 0, "old"), makeEvent(kind, 1, "")});
        EXPECT_EQ(only(board).message, "");
    }
}

TEST(SessionBoard, claudesFinishAlertsFromTwentySecondsOfWorkOn) {
    for (const double work : {19.0, 19.999'999'999}) {
        SessionBoard board = boardAfter({makeEvent(EventKind::running, 0)});
        EXPECT_EQ(board.apply(makeEvent(EventKind::finished, work)), std::nullopt) << work;
        EXPECT_EQ(only(board).status, SessionStatus::done(at(work)));
    }
    for (const double work : {20.0, 3600.0}) {
        SessionBoard board = boardAfter({makeEvent(EventKind::running, 0)});
        const auto effect = board.apply(makeEvent(EventKind::finished, work, "result"));
        EXPECT_EQ(effect, BoardEffect::showDone(only(board))) << work;
        EXPECT_EQ(only(board).status, SessionStatus::done(at(work)));
        EXPECT_EQ(only(board).message, "result");
        EXPECT_EQ(only(board).runningSince, std::nullopt);
        EXPECT_EQ(only(board).lastAlerted, std::nullopt);
    }
}

TEST(SessionBoard, claudesFinishIsSilentWhenTheClockWentBackwards) {
    SessionBoard board = boardAfter({makeEvent(EventKind::running, 100)});
    EXPECT_EQ(board.apply(makeEvent(EventKind::finished, 0)), std::nullopt);
}

TEST(SessionBoard, claudesSessionFirstSeenAtItsFinishRaisesNoAlert) {
    SessionBoard board;
    EXPECT_EQ(board.apply(makeEvent(EventKind::finished, 50, "result")), std::nullopt);
    EXPECT_EQ(only(board).status, SessionStatus::done(at(50)));
    EXPECT_EQ(only(board).message, "result");
}

TEST(SessionBoard, claudesSecondFinishInARowHasWorkedForNoTime) {
    SessionBoard board = boardAfter({makeEvent(EventKind::running, 0), makeEvent(EventKind::finished, 30)});
    EXPECT_EQ(board.apply(makeEvent(EventKind::finished, 90)), std::nullopt);
    EXPECT_EQ(only(board).status, SessionStatus::done(at(90)));
}

TEST(SessionBoard, codexsFinishAlwaysAlerts) {
    SessionBoard board;
    AgentEvent event = makeEvent(EventKind::finished, 0, "result");
    event.source = AgentKind::codex;
    const auto first = board.apply(event);
    EXPECT_EQ(first, BoardEffect::showDone(only(board)));
    EXPECT_EQ(only(board).status, SessionStatus::done(at(0)));
    EXPECT_EQ(only(board).runningSince, std::nullopt);
    event.date = at(-5);
    const auto second = board.apply(event);
    EXPECT_EQ(second, BoardEffect::showDone(only(board)));
    EXPECT_NE(first, second);
}

TEST(SessionBoard, aFinishWithoutMessageKeepsTheOldOne) {
    const SessionBoard board =
        boardAfter({makeEvent(EventKind::needsInput, 0, "question"), makeEvent(EventKind::finished, 1, "")});
    EXPECT_EQ(only(board).message, "question");
}

TEST(SessionBoard, finishedWhileWaitingDismissesAndRaisesNoDoneBanner) {
    for (const AgentKind agent : AgentKind::allCases) {
        for (const EventKind kind : prompts) {
            SessionBoard board = boardAfter({makeEvent(agent, "s1", EventKind::running, 0)});
            board.apply(makeEvent(agent, "s1", kind, 30));
            board.snooze(only(board).id(), at(900));
            const auto effect = board.apply(makeEvent(agent, "s1", EventKind::finished, 60));
            EXPECT_EQ(effect, BoardEffect::dismiss(std::string(agent.rawValue()) + ":s1"));
            EXPECT_EQ(only(board).status, SessionStatus::done(at(60)));
            EXPECT_EQ(only(board).lastAlerted, std::nullopt);
            EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
            EXPECT_EQ(only(board).runningSince, std::nullopt);
        }
    }
}

TEST(SessionBoard, finishedClearsASnoozeThatWasSetWhileRunning) {
    SessionBoard board = boardAfter({makeEvent(EventKind::running, 0)});
    board.snooze("claude:s1", at(900));
    board.apply(makeEvent(EventKind::finished, 30));
    EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
}

TEST(SessionBoard, runningWhileWaitingDismisses) {
    for (const EventKind kind : prompts) {
        SessionBoard board = boardAfter({makeEvent(EventKind::running, 0), makeEvent(kind, 30, "may I?")});
        board.snooze("claude:s1", at(900));
        const auto effect = board.apply(makeEvent(EventKind::running, 60, "ignored"));
        EXPECT_EQ(effect, BoardEffect::dismiss("claude:s1"));
        EXPECT_EQ(only(board).status, SessionStatus::running());
        EXPECT_EQ(only(board).message, "may I?");
        EXPECT_EQ(only(board).lastAlerted, std::nullopt);
        EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
        EXPECT_EQ(only(board).runningSince, at(0));
    }
}

TEST(SessionBoard, runningWhileRunningKeepsTheStartAndShowsNothing) {
    SessionBoard board = boardAfter({makeEvent(EventKind::running, 0)});
    board.snooze("claude:s1", at(900));
    EXPECT_EQ(board.apply(makeEvent(EventKind::running, 15)), std::nullopt);
    EXPECT_EQ(only(board).runningSince, at(0));
    EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
}

TEST(SessionBoard, runningAfterDoneStartsANewStretchOfWork) {
    SessionBoard board =
        boardAfter({makeEvent(EventKind::running, 0), makeEvent(EventKind::finished, 30, "result")});
    EXPECT_EQ(board.apply(makeEvent(EventKind::running, 40)), std::nullopt);
    EXPECT_EQ(only(board).runningSince, at(40));
    EXPECT_EQ(only(board).message, "result");
    EXPECT_EQ(board.apply(makeEvent(EventKind::finished, 59)), std::nullopt);
}

TEST(SessionBoard, runningAfterAPromptThatFollowedAFinishStartsTheWork) {
    const SessionBoard board =
        boardAfter({makeEvent(EventKind::running, 0), makeEvent(EventKind::finished, 30),
                    makeEvent(EventKind::needsInput, 40), makeEvent(EventKind::running, 50)});
    EXPECT_EQ(only(board).runningSince, at(50));
}

TEST(SessionBoard, sessionsStayInTheOrderInWhichTheyWereFirstHeardOf) {
    const SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "b", EventKind::running, 0),
                                           makeEvent(AgentKind::codex, "a", EventKind::finished, 1),
                                           makeEvent(AgentKind::claude, "c", EventKind::running, 2),
                                           makeEvent(AgentKind::claude, "b", EventKind::needsInput, 3)});
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:b", "codex:a", "claude:c"));
}

TEST(SessionBoard, aReminderIsDueExactlyWhenTheIntervalHasPassed) {
    SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0)});
    EXPECT_THAT(board.dueReminders(at(119.999'999'999), Seconds(120)), IsEmpty());
    EXPECT_EQ(only(board).lastAlerted, at(0));
    const auto due = board.dueReminders(at(120), Seconds(120));
    EXPECT_EQ(only(board).lastAlerted, at(120));
    EXPECT_THAT(due, ElementsAre(only(board)));
    EXPECT_EQ(only(board).status, SessionStatus::waiting(EventKind::needsInput, at(0)));
    EXPECT_THAT(board.dueReminders(at(239), Seconds(120)), IsEmpty());
    EXPECT_THAT(ids(board.dueReminders(at(240), Seconds(120))), ElementsAre("claude:s1"));
}

TEST(SessionBoard, onlyWaitingSessionsAreReminded) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "runs", EventKind::running, 0),
                                     makeEvent(AgentKind::codex, "done", EventKind::finished, 0)});
    board.snooze("claude:runs", at(1));
    board.snooze("codex:done", at(1));
    const SessionBoard before = board;
    EXPECT_THAT(board.dueReminders(at(9999), Seconds(60)), IsEmpty());
    EXPECT_EQ(board, before);
}

TEST(SessionBoard, remindersKeepTheOrderOfTheList) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "late", EventKind::needsInput, 30),
                                     makeEvent(AgentKind::claude, "runs", EventKind::running, 0),
                                     makeEvent(AgentKind::claude, "early", EventKind::needsPermission, 0),
                                     makeEvent(AgentKind::claude, "latest", EventKind::needsPermission, 50)});
    EXPECT_THAT(ids(board.dueReminders(at(100), Seconds(60))), ElementsAre("claude:late", "claude:early"));
}

TEST(SessionBoard, anIntervalOfZeroOrLessTurnsRemindersOff) {
    for (const double interval : {0.0, -60.0}) {
        SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0)});
        EXPECT_THAT(board.dueReminders(at(99'999), Seconds(interval)), IsEmpty());
    }
}

TEST(SessionBoard, aSnoozeHoldsRemindersBackUntilItEnds) {
    SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0)});
    board.snooze("claude:s1", at(300));
    EXPECT_THAT(board.dueReminders(at(299.999'999'999), Seconds(60)), IsEmpty());
    EXPECT_EQ(only(board).snoozedUntil, at(300));
    EXPECT_EQ(board.dueReminders(at(300), Seconds(60)), board.sessions());
    EXPECT_EQ(only(board).snoozedUntil, std::nullopt);
    EXPECT_EQ(only(board).lastAlerted, at(300));
    EXPECT_THAT(board.dueReminders(at(359), Seconds(60)), IsEmpty());
    EXPECT_THAT(ids(board.dueReminders(at(360), Seconds(60))), ElementsAre("claude:s1"));
}

TEST(SessionBoard, aSnoozeEndsWithOneReminderAlsoWhenRemindersAreOff) {
    SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0)});
    board.snooze("claude:s1", at(300));
    EXPECT_THAT(ids(board.dueReminders(at(1000), Seconds(0))), ElementsAre("claude:s1"));
    EXPECT_THAT(board.dueReminders(at(2000), Seconds(0)), IsEmpty());
}

TEST(SessionBoard, aSnoozeThatEndsIsDueBeforeTheIntervalHasPassed) {
    SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0)});
    board.snooze("claude:s1", at(5));
    EXPECT_THAT(ids(board.dueReminders(at(5), Seconds(300))), ElementsAre("claude:s1"));
}

TEST(SessionBoard, snoozeChangesNothingButItsTimeAndIgnoresUnknownSessions) {
    SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0, "question")});
    const SessionBoard before = board;
    for (const char* id :
         {"claude:other", "codex:s1", "s1", "claude", "claude:", "claude:s", "claude-s1", "", ":s1"}) {
        board.snooze(id, at(300));
        EXPECT_EQ(board, before) << id;
    }
    board.snooze("claude:s1", at(300));
    AgentSession expected = only(before);
    expected.snoozedUntil = at(300);
    EXPECT_EQ(only(board), expected);
}

TEST(SessionBoard, pruneKeepsAFinishedSessionForExactlyHalfAnHour) {
    SessionBoard board = boardAfter({makeEvent(EventKind::finished, 0)});
    board.prune(at(1800));
    EXPECT_EQ(board.sessions().size(), 1U);
    board.prune(at(1800.001));
    EXPECT_THAT(board.sessions(), IsEmpty());
}

TEST(SessionBoard, pruneKeepsAnySilentSessionForExactlyTwelveHours) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::needsInput, 0),
                                     makeEvent(AgentKind::claude, "b", EventKind::running, 0),
                                     makeEvent(AgentKind::claude, "c", EventKind::running, 1)});
    board.prune(at(43'200));
    EXPECT_EQ(board.sessions().size(), 3U);
    board.prune(at(43'200.001));
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:c"));
}

TEST(SessionBoard, pruneUsesTheTimeOfTheFinishAndKeepsTheOthersInOrder) {
    SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::running, 0),
                                     makeEvent(AgentKind::claude, "b", EventKind::finished, 0),
                                     makeEvent(AgentKind::claude, "c", EventKind::needsInput, 0),
                                     makeEvent(AgentKind::claude, "d", EventKind::finished, 1000)});
    board.prune(at(2000));
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:a", "claude:c", "claude:d"));
    board.prune(at(-99'999));
    EXPECT_EQ(board.sessions().size(), 3U);
}

TEST(SessionBoard, sortedPutsWaitingBeforeRunningBeforeDone) {
    const SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "done", EventKind::finished, 3600),
                                           makeEvent(AgentKind::claude, "runs", EventKind::running, 3599),
                                           makeEvent(AgentKind::claude, "waits", EventKind::needsInput, 0)});
    EXPECT_THAT(ids(board.sorted()), ElementsAre("claude:waits", "claude:runs", "claude:done"));
    EXPECT_THAT(ids(board.sessions()), ElementsAre("claude:done", "claude:runs", "claude:waits"));
}

TEST(SessionBoard, sortedPutsTheLatestFirstAndKeepsTheListsOrderOfEquals) {
    const SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::running, 5),
                                           makeEvent(AgentKind::claude, "b", EventKind::running, 9),
                                           makeEvent(AgentKind::claude, "c", EventKind::running, 5),
                                           makeEvent(AgentKind::claude, "d", EventKind::running, 9),
                                           makeEvent(AgentKind::claude, "e", EventKind::running, 7)});
    EXPECT_THAT(ids(board.sorted()), ElementsAre("claude:b", "claude:d", "claude:e", "claude:a", "claude:c"));
}

TEST(SessionBoard, sortedKeepsTheOrderOfEqualsInALongList) {
    // Few enough elements are sorted by insertion, which is stable by itself.
    constexpr std::size_t count = 60;
    SessionBoard board;
    std::vector<std::string> later;
    std::vector<std::string> earlier;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isLater = i % 2 == 0;
        const std::string sessionID = "s" + std::to_string(i);
        board.apply(makeEvent(AgentKind::claude, sessionID, EventKind::running, isLater ? 9 : 5));
        (isLater ? later : earlier).push_back("claude:" + sessionID);
    }
    later.insert(later.end(), earlier.begin(), earlier.end());
    EXPECT_EQ(ids(board.sorted()), later);
}

TEST(SessionBoard, sortedCopiesWholeSessions) {
    const SessionBoard board = boardAfter({makeEvent(EventKind::needsInput, 0, "question")});
    EXPECT_EQ(board.sorted(), board.sessions());
}

TEST(SessionBoard, waitingCountCountsBothReasons) {
    const SessionBoard board = boardAfter({makeEvent(AgentKind::claude, "a", EventKind::needsInput, 0),
                                           makeEvent(AgentKind::claude, "b", EventKind::needsPermission, 0),
                                           makeEvent(AgentKind::claude, "c", EventKind::running, 0),
                                           makeEvent(AgentKind::claude, "d", EventKind::finished, 0)});
    EXPECT_EQ(board.waitingCount(), 2U);
}

} // namespace
} // namespace corvane
