#pragma once

#include "Sessions/SessionBoard.h"

namespace corvane::test {

/// A session of `agent` that has waited for permission since `since`.
inline AgentSession waitingSession(const std::string& sessionID, Date since,
                                   AgentKind agent = AgentKind::claude) {
    AgentSession session;
    session.agent = agent;
    session.sessionID = sessionID;
    session.cwd = "/w/shop";
    session.message = "Claude needs your permission to use Bash";
    session.status = SessionStatus::waiting(EventKind::needsPermission, since);
    session.lastEvent = since;
    session.lastAlerted = since;
    return session;
}

/// A session of `agent` that finished at `at`.
inline AgentSession doneSession(const std::string& sessionID, Date at, AgentKind agent = AgentKind::claude) {
    AgentSession session;
    session.agent = agent;
    session.sessionID = sessionID;
    session.cwd = "/w/shop";
    session.status = SessionStatus::done(at);
    session.lastEvent = at;
    return session;
}

} // namespace corvane::test
