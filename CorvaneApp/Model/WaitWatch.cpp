#include "Model/WaitWatch.h"

#include <utility>

namespace corvane {

std::vector<AgentSession> WaitWatch::ended(const std::vector<AgentSession>& sessions, Date now) {
    std::vector<AgentSession> ended;
    std::map<std::string, Wait> waits;
    for (const AgentSession& session : sessions) {
        if (!session.isWaiting()) continue;
        const std::string id = session.id();
        const auto known = waits_.find(id);
        // Another process may have resumed the session since.
        const bool isKnown = known != waits_.end() && known->second.lastPrompt == session.lastEvent;
        Wait wait = isKnown ? known->second : begin(session, now);
        if (wait.process && !processes_.isRunning(*wait.process)) {
            ended.push_back(session);
            wait.process.reset();
        }
        waits.emplace(id, wait);
    }
    waits_ = std::move(waits);
    return ended;
}

WaitWatch::Wait WaitWatch::begin(const AgentSession& session, Date now) const {
    Wait wait{session.lastEvent, std::nullopt};
    const auto age = now - session.lastEvent;
    // If the clock was set back, old events appear to be in the future.
    if (session.cwd.empty() || age > freshness || age < -freshness) return wait;
    const std::vector<ProcessIdentity> running =
        processes_.running(std::string(session.agent.rawValue()), session.cwd);
    if (running.size() == 1) wait.process = running.front();
    return wait;
}

} // namespace corvane
