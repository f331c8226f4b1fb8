#pragma once

#include "Sessions/SessionBoard.h"

#include <cmath>
#include <string>
#include <utility>

namespace corvane::test {

/// A moment `seconds` after an arbitrary date.
inline Date at(double seconds) {
    return Date(1'790'000'000, 0) + Seconds(seconds);
}

/// An event of Claude's session "s1" in "/w/shop" with an empty message; change what matters.
inline AgentEvent makeEvent(EventKind kind, double seconds, std::string message = {}) {
    AgentEvent event;
    event.source = AgentKind::claude;
    event.kind = kind;
    event.sessionID = "s1";
    event.cwd = "/w/shop";
    event.message = std::move(message);
    event.date = at(seconds);
    return event;
}

inline AgentEvent makeEvent(AgentKind source, std::string sessionID, EventKind kind, double seconds) {
    AgentEvent event = makeEvent(kind, seconds);
    event.source = source;
    event.sessionID = std::move(sessionID);
    return event;
}

} // namespace corvane::test
