#include "Sessions/SessionBoard.h"

#include "Support/Text.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

namespace corvane {

namespace {

std::string sessionKey(AgentKind agent, std::string_view sessionID) {
    std::string key(agent.rawValue());
    key += ':';
    key += sessionID;
    return key;
}

// The same as comparing `id`s, since no agent's raw value contains a colon, but without composing a string
// for each session.
bool isOf(const AgentSession& session, const AgentEvent& event) {
    return session.agent == event.source && session.sessionID == event.sessionID;
}

bool hasId(const AgentSession& session, std::string_view id) {
    const std::string_view agent = session.agent.rawValue();
    return id.size() == agent.size() + 1 + session.sessionID.size() && id.starts_with(agent) &&
           id[agent.size()] == ':' && id.ends_with(session.sessionID);
}

void replaceUnlessEmpty(std::string& known, const std::string& reported) {
    if (!reported.empty()) known = reported;
}

std::optional<BoardEffect> applyPrompt(AgentSession& session, const AgentEvent& event) {
    const SessionStatus::Waiting* const before = session.status.ifWaiting();
    const bool isRepeated = before != nullptr && before->reason == event.kind;
    session.status = SessionStatus::waiting(event.kind, isRepeated ? before->since : event.date);
    session.message = event.message;
    session.lastAlerted = event.date;
    session.snoozedUntil.reset();
    return BoardEffect::showWaiting(session);
}

std::optional<BoardEffect> applyFinished(AgentSession& session, const AgentEvent& event) {
    const bool wasWaiting = session.isWaiting();
    const Seconds work = event.date - session.runningSince.value_or(event.date);
    session.status = SessionStatus::done(event.date);
    replaceUnlessEmpty(session.message, event.message);
    session.lastAlerted.reset();
    session.snoozedUntil.reset();
    session.runningSince.reset();

    // The user has just answered the prompt and sees the agent finish.
    if (wasWaiting) return BoardEffect::dismiss(session.id());
    const std::optional<Seconds> minWork = session.agent.descriptor().minWorkForDoneAlert;
    if (minWork && work < *minWork) return std::nullopt;
    return BoardEffect::showDone(session);
}

std::optional<BoardEffect> applyRunning(AgentSession& session, const AgentEvent& event) {
    const bool wasWaiting = session.isWaiting();
    // Finishing cleared it, so that new work counts from its own start.
    if (!session.runningSince) session.runningSince = event.date;
    session.status = SessionStatus::running();
    session.lastAlerted.reset();
    session.snoozedUntil.reset();
    if (wasWaiting) return BoardEffect::dismiss(session.id());
    return std::nullopt;
}

// Whether the session's reminder is due or its snooze has expired.
bool isDue(const AgentSession& session, Date now, Seconds interval) {
    if (!session.isWaiting()) return false;
    if (session.snoozedUntil) return now >= *session.snoozedUntil;
    return interval > Seconds::zero() && now - session.lastAlerted.value_or(session.lastEvent) >= interval;
}

int displayGroup(const AgentSession& session) {
    if (session.status.isWaiting()) return 0;
    return session.status.isRunning() ? 1 : 2;
}

} // namespace

std::string AgentSession::id() const {
    return sessionKey(agent, sessionID);
}

std::string AgentSession::repoName() const {
    return text::lastPathComponent(cwd);
}

std::optional<BoardEffect> SessionBoard::apply(const AgentEvent& event) {
    if (event.kind == EventKind::ended) {
        std::erase_if(sessions_, [&](const AgentSession& session) { return isOf(session, event); });
        return BoardEffect::dismiss(sessionKey(event.source, event.sessionID));
    }

    AgentSession& session = upsert(event);
    switch (event.kind) {
    case EventKind::needsPermission:
    case EventKind::needsInput:
        return applyPrompt(session, event);
    case EventKind::finished:
        return applyFinished(session, event);
    case EventKind::running:
        return applyRunning(session, event);
    case EventKind::ended:
        break;
    }
    return std::nullopt;
}

std::vector<AgentSession> SessionBoard::dueReminders(Date now, Seconds interval) {
    std::vector<AgentSession> due;
    for (AgentSession& session : sessions_) {
        if (!isDue(session, now, interval)) continue;
        session.snoozedUntil.reset();
        session.lastAlerted = now;
        due.push_back(session);
    }
    return due;
}

void SessionBoard::snooze(std::string_view id, Date until) {
    const auto found = std::find_if(sessions_.begin(), sessions_.end(),
                                    [&](const AgentSession& session) { return hasId(session, id); });
    if (found != sessions_.end()) found->snoozedUntil = until;
}

void SessionBoard::prune(Date now) {
    std::erase_if(sessions_, [&](const AgentSession& session) {
        const SessionStatus::Done* const done = session.status.ifDone();
        return (done != nullptr && now - done->at > doneRetention) || now - session.lastEvent > staleAfter;
    });
}

std::vector<AgentSession> SessionBoard::sorted() const {
    // Sorts pointers: a session is large to move.
    std::vector<const AgentSession*> order;
    order.reserve(sessions_.size());
    for (const AgentSession& session : sessions_)
        order.push_back(&session);
    std::stable_sort(order.begin(), order.end(), [](const AgentSession* left, const AgentSession* right) {
        return std::tuple(displayGroup(*left), right->lastEvent) <
               std::tuple(displayGroup(*right), left->lastEvent);
    });

    std::vector<AgentSession> result;
    result.reserve(order.size());
    for (const AgentSession* const session : order)
        result.push_back(*session);
    return result;
}

std::size_t SessionBoard::waitingCount() const {
    return static_cast<std::size_t>(
        std::count_if(sessions_.begin(), sessions_.end(), std::mem_fn(&AgentSession::isWaiting)));
}

AgentSession& SessionBoard::upsert(const AgentEvent& event) {
    auto found = std::find_if(sessions_.begin(), sessions_.end(),
                              [&](const AgentSession& session) { return isOf(session, event); });
    if (found == sessions_.end()) {
        AgentSession session;
        session.agent = event.source;
        session.sessionID = event.sessionID;
        session.runningSince = event.date;
        found = sessions_.insert(sessions_.end(), std::move(session));
    }
    replaceUnlessEmpty(found->cwd, event.cwd);
    replaceUnlessEmpty(found->terminalBundleID, event.terminalBundleID);
    replaceUnlessEmpty(found->terminalProgram, event.terminalProgram);
    found->lastEvent = event.date;
    return *found;
}

} // namespace corvane
