#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// A process that will not be taken for a later one with the same number.
struct ProcessIdentity {
    std::int64_t number = 0;
    std::uint64_t started = 0; ///< when, in a unit of the system's own

    bool operator==(const ProcessIdentity&) const = default;
};

/// The agents' running processes. Main thread only.
class AgentProcesses {
  public:
    AgentProcesses() = default;
    AgentProcesses(const AgentProcesses&) = delete;
    AgentProcesses& operator=(const AgentProcesses&) = delete;
    virtual ~AgentProcesses() = default;

    /// All processes that run the program `agent` in the working directory `directory`; none where the system
    /// does not say.
    [[nodiscard]] virtual std::vector<ProcessIdentity> running(const std::string& agent,
                                                               const std::string& directory) const = 0;

    /// Whether the process still runs.
    [[nodiscard]] virtual bool isRunning(const ProcessIdentity& process) const = 0;
};

} // namespace corvane
