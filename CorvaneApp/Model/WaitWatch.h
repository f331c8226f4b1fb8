#pragma once

#include "Platform/AgentProcesses.h"
#include "Sessions/SessionBoard.h"
#include "Support/Date.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Detects agents that end while they wait for the user: if they are killed with their terminal, they report
/// nothing, and their sessions' reminders would never stop.
///
/// The process of a waiting session is the one that runs its agent in its folder when it begins to wait. If
/// there is none or more than one, or the event was read too late to tell, the session is not watched until
/// its next prompt. Queries processes only while a session waits.
class WaitWatch {
  public:
    /// An event read later than this after it happened is no evidence of the current processes.
    static constexpr Seconds freshness{5};

    explicit WaitWatch(const AgentProcesses& processes)
        : processes_(processes) {}

    /// Returns the waiting ones among `sessions` whose process was known and has ended, each once. Call it
    /// after every pass of the loop.
    [[nodiscard]] std::vector<AgentSession> ended(const std::vector<AgentSession>& sessions, Date now);

  private:
    struct Wait {
        Date lastPrompt;
        std::optional<ProcessIdentity> process; ///< none if in doubt
    };

    [[nodiscard]] Wait begin(const AgentSession& session, Date now) const;

    const AgentProcesses& processes_;
    std::map<std::string, Wait> waits_; ///< by the sessions' `id`
};

} // namespace corvane
