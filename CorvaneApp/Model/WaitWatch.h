#pragma once

#include "Platform/AgentProcesses.h"
#include "Sessions/SessionBoard.h"
#include "Support/Date.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Notices agents that end while they wait for the user: killed with their terminal, they report nothing, and
/// their sessions would be brought up again and again.
///
/// The process of a waiting session is the one that runs its agent in its folder when it begins to wait. With
/// none or several there, or where the event was read too late to tell, nothing is known of the session until
/// its next prompt. Looks at processes only while a session waits.
class WaitWatch {
  public:
    /// An event read longer than this after it happened says nothing about the processes of now.
    static constexpr Seconds freshness{5};

    explicit WaitWatch(const AgentProcesses& processes)
        : processes_(processes) {}

    /// The waiting ones among `sessions` whose process was known and has ended, each once. To be called after
    /// every pass of the loop.
    [[nodiscard]] std::vector<AgentSession> ended(const std::vector<AgentSession>& sessions, Date now);

  private:
    struct Wait {
        Date lastPrompt;
        std::optional<ProcessIdentity> process; ///< none where there is doubt
    };

    [[nodiscard]] Wait begin(const AgentSession& session, Date now) const;

    const AgentProcesses& processes_;
    std::map<std::string, Wait> waits_; ///< by the sessions' `id`
};

} // namespace corvane
