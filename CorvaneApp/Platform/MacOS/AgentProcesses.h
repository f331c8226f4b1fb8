#pragma once

#include "Platform/AgentProcesses.h"

namespace corvane {

/// Knows no process: that two processes of an agent share a folder could be overlooked here, since scripts
/// are listed under their interpreter's name.
class MacAgentProcesses : public AgentProcesses {
  public:
    [[nodiscard]] std::vector<ProcessIdentity> running(const std::string& /*agent*/,
                                                       const std::string& /*directory*/) const override {
        return {};
    }
    [[nodiscard]] bool isRunning(const ProcessIdentity& /*process*/) const override { return true; }
};

} // namespace corvane
