#pragma once

#include "Platform/AgentProcesses.h"

namespace corvane {

/// Reports no processes: scripts are listed under their interpreter's name, so a second process of an agent
/// in the same folder could be missed.
class MacAgentProcesses : public AgentProcesses {
  public:
    [[nodiscard]] std::vector<ProcessIdentity> running(const std::string& /*agent*/,
                                                       const std::string& /*directory*/) const override {
        return {};
    }
    [[nodiscard]] bool isRunning(const ProcessIdentity& /*process*/) const override { return true; }
};

} // namespace corvane
