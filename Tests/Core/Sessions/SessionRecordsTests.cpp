#include "SessionSupport.h"
#include "Sessions/SessionBoard.h"

#include <gtest/gtest.h>

#include <utility>

namespace corvane {
namespace {

using test::at;

TEST(AgentSession, idIsTheAgentsRawNameAColonAndTheSessionIdentifier) {
    AgentSession session;
    session.sessionID = "a:b";
    EXPECT_EQ(session.id(), "claude:a:b");
    session.agent = AgentKind::codex;
    session.sessionID = "";
    EXPECT_EQ(session.id(), "codex:");
}

TEST(AgentSession, repoNameIsTheLastComponentElseTheWholeDirectory) {
    AgentSession session;
    for (const auto& [cwd, name] :
         {std::pair("/Users/you/my-project", "my-project"), std::pair("/w/shop/", "shop"),
          std::pair("/", "/"), std::pair("//", "//"), std::pair("", ""), std::pair("shop", "shop"),
          std::pair("/w/..", ".."), std::pair("/w/caf\u00E9 \u5E97", "caf\u00E9 \u5E97")}) {
        session.cwd = cwd;
        EXPECT_EQ(session.repoName(), name) << cwd;
    }
}

TEST(AgentSession, isWaitingOnlyInTheWaitingStatus) {
    AgentSession session;
    EXPECT_FALSE(session.isWaiting());
    session.status = SessionStatus::done(at(0));
    EXPECT_FALSE(session.isWaiting());
    session.status = SessionStatus::waiting(EventKind::needsInput, at(0));
    EXPECT_TRUE(session.isWaiting());
}

TEST(AgentSession, everyFieldCountsForEquality) {
    const AgentSession session;
    const auto differs = [&](auto change) {
        AgentSession other = session;
        change(other);
        return !(other == session);
    };
    EXPECT_EQ(session, AgentSession());
    EXPECT_TRUE(differs([](AgentSession& s) { s.agent = AgentKind::codex; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.sessionID = "x"; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.cwd = "x"; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.message = "x"; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.terminalBundleID = "x"; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.terminalProgram = "x"; }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.status = SessionStatus::done(Date()); }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.lastEvent = at(0); }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.lastAlerted = Date(); }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.runningSince = Date(); }));
    EXPECT_TRUE(differs([](AgentSession& s) { s.snoozedUntil = Date(); }));
}

TEST(SessionStatus, isEqualOnlyToTheSameCaseWithTheSamePayload) {
    const SessionStatus waiting = SessionStatus::waiting(EventKind::needsInput, at(1));
    EXPECT_EQ(waiting, SessionStatus::waiting(EventKind::needsInput, at(1)));
    EXPECT_NE(waiting, SessionStatus::waiting(EventKind::needsPermission, at(1)));
    EXPECT_NE(waiting, SessionStatus::waiting(EventKind::needsInput, at(2)));
    EXPECT_NE(waiting, SessionStatus::done(at(1)));
    EXPECT_NE(SessionStatus::done(at(1)), SessionStatus::done(at(2)));
    EXPECT_NE(SessionStatus::done(at(1)), SessionStatus::running());
    EXPECT_EQ(SessionStatus::running(), SessionStatus::running());
}

TEST(BoardEffect, isEqualOnlyToTheSameCaseWithTheSamePayload) {
    AgentSession session;
    EXPECT_EQ(BoardEffect::showWaiting(session), BoardEffect::showWaiting(session));
    EXPECT_NE(BoardEffect::showWaiting(session), BoardEffect::showDone(session));
    EXPECT_NE(BoardEffect::dismiss(session.id()), BoardEffect::showDone(session));
    EXPECT_NE(BoardEffect::dismiss("claude:a"), BoardEffect::dismiss("claude:b"));
    AgentSession other = session;
    other.message = "x";
    EXPECT_NE(BoardEffect::showDone(session), BoardEffect::showDone(other));
}

} // namespace
} // namespace corvane
