#include "BoardDescription.h"

namespace corvane::test {

namespace {

std::optional<Nanoseconds> nanoseconds(std::optional<Date> date) {
    return date ? std::optional(test::nanoseconds(*date)) : std::nullopt;
}

} // namespace

Date date(Nanoseconds time) {
    Nanoseconds whole = time / second;
    Nanoseconds rest = time % second;
    if (rest < 0) {
        rest += second;
        --whole;
    }
    return {origin + whole, static_cast<std::int32_t>(rest)};
}

Nanoseconds nanoseconds(Date date) {
    return (date.seconds() - origin) * second + date.nanoseconds();
}

NaiveSession described(const AgentSession& session) {
    NaiveSession result;
    result.agent = session.agent.rawValue();
    result.sessionID = session.sessionID;
    result.cwd = session.cwd;
    result.message = session.message;
    result.bundle = session.terminalBundleID;
    result.program = session.terminalProgram;
    result.lastEvent = nanoseconds(session.lastEvent);
    result.lastAlerted = nanoseconds(session.lastAlerted);
    result.runningSince = nanoseconds(session.runningSince);
    result.snoozedUntil = nanoseconds(session.snoozedUntil);
    if (const auto* const waiting = session.status.ifWaiting()) {
        result.status = rawValue(waiting->reason);
        result.waitingSince = nanoseconds(waiting->since);
    } else if (const auto* const done = session.status.ifDone()) {
        result.status = "done";
        result.doneAt = nanoseconds(done->at);
    } else {
        result.status = "running";
    }
    return result;
}

std::vector<NaiveSession> described(const std::vector<AgentSession>& sessions) {
    std::vector<NaiveSession> result;
    for (const AgentSession& session : sessions)
        result.push_back(described(session));
    return result;
}

std::optional<NaiveEffect> described(const std::optional<BoardEffect>& effect) {
    if (!effect) return std::nullopt;
    if (const auto* const dismiss = effect->ifDismiss())
        return NaiveEffect{"dismiss", dismiss->sessionID, {}};
    if (const auto* const waiting = effect->ifShowWaiting()) {
        return NaiveEffect{"showWaiting", waiting->session.id(), described(waiting->session)};
    }
    const auto* const done = effect->ifShowDone();
    return NaiveEffect{"showDone", done->session.id(), described(done->session)};
}

} // namespace corvane::test
