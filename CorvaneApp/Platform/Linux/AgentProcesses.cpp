#include "Platform/Linux/AgentProcesses.h"

#include <optional>
#include <sys/types.h>
#include <utility>

namespace corvane {

LinuxAgentProcesses::LinuxAgentProcesses(ProcessTable processes)
    : processes_(std::move(processes)) {}

std::vector<ProcessIdentity> LinuxAgentProcesses::running(const std::string& agent,
                                                          const std::string& directory) const {
    std::vector<ProcessIdentity> found;
    for (const pid_t process : processes_.running(agent, directory)) {
        if (const std::optional<std::uint64_t> started = processes_.startTime(process))
            found.push_back({process, *started});
    }
    return found;
}

bool LinuxAgentProcesses::isRunning(const ProcessIdentity& process) const {
    return !processes_.hasEnded(static_cast<pid_t>(process.number), process.started);
}

} // namespace corvane
