#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// Identifies a process, and distinguishes it from a later one with the same process ID.
struct ProcessIdentity {
    std::int64_t number = 0;
    std::uint64_t started = 0; ///< start time, in a system-specific unit

    bool operator==(const ProcessIdentity&) const = default;
};

/// The agents' running processes. Main thread only.
class AgentProcesses {
  public:
    AgentProcesses() = default;
    AgentProcesses(const AgentProcesses&) = delete;
    AgentProcesses& operator=(const AgentProcesses&) = delete;
    virtual ~AgentProcesses() = default;

    /// All processes that run the program `agent` in the working directory `directory`; none if the system
    /// does not report them.
    [[nodiscard]] virtual std::vector<ProcessIdentity> running(const std::string& agent,
                                                               const std::string& directory) const = 0;

    /// Whether the process is still running.
    [[nodiscard]] virtual bool isRunning(const ProcessIdentity& process) const = 0;
};

} // namespace corvane
