#pragma once

#include "Platform/Applications.h"
#include "Platform/Linux/ProcessTable.h"

#include <QObject>

namespace corvane {

/// Applications by the X11 class of their windows, terminals also by the processes that run in them.
class LinuxApplications : public Applications {
  public:
    void activate(const std::string& bundleID) override;

    /// The window of the nearest ancestor of the agent's process that has one. A terminal whose windows share
    /// one process shows the one that was last on top. Inside tmux, whose server is nobody's child, the way
    /// goes through the client that shows the agent's session; tmux is asked for it and not waited for.
    void activateTerminal(const std::string& agent, const std::string& directory) override;

  private:
    void activateTmuxClient(const std::string& socket, const std::string& session);

    ProcessTable processes_;
    QObject context_;
};

} // namespace corvane
