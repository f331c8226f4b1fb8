#pragma once

#include "Platform/AgentProcesses.h"
#include "Platform/Linux/ProcessTable.h"

namespace corvane {

/// The agents' processes, from the proc file system.
class LinuxAgentProcesses : public AgentProcesses {
  public:
    explicit LinuxAgentProcesses(ProcessTable processes = ProcessTable());

    [[nodiscard]] std::vector<ProcessIdentity> running(const std::string& agent,
                                                       const std::string& directory) const override;
    [[nodiscard]] bool isRunning(const ProcessIdentity& process) const override;

  private:
    ProcessTable processes_;
};

} // namespace corvane
