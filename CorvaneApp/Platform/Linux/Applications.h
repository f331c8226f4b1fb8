#pragma once

#include "Platform/Applications.h"
#include "Platform/Linux/ProcessTable.h"

#include <QObject>

#include <sys/types.h>

namespace corvane {

/// Applications by the X11 class of their windows, terminals also by the processes that run in them.
class LinuxApplications : public Applications {
  public:
    void activate(const std::string& bundleID) override;

    /// The window of the nearest ancestor of the agent's process that has one. Of a terminal whose windows
    /// share one process, it is the one that the agent was told of by WINDOWID; where the terminal does not
    /// tell, the one that was last on top. Inside tmux, whose server is nobody's child, the way goes through
    /// the client that shows the agent's session; tmux is asked for it and not waited for.
    void activateTerminal(const std::string& agent, const std::string& directory) override;

  private:
    /// Activates the window in which this process runs; whether there is one.
    [[nodiscard]] bool activateWindow(pid_t process) const;
    void activateTmuxClient(const std::string& socket, const std::string& session);

    ProcessTable processes_;
    QObject context_;
};

} // namespace corvane
