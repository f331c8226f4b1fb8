#pragma once

#include "Platform/Applications.h"
#include "Platform/Linux/ProcessTable.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

class QProcess;

namespace corvane {

/// Finds terminals by the agents that run in them, else applications by the X11 class of their windows.
///
/// An agent's window is that of the nearest ancestor of its process that has one. If the terminal's windows
/// share one process, it is the window in the agent's WINDOWID; without that variable, the topmost one.
/// Inside tmux, whose server is no descendant of a terminal, the search starts at a client; tmux is asked for
/// it, and told to show the agent's pane, asynchronously.
class LinuxApplications : public Applications {
  public:
    void activate(const Terminal& terminal, Report report) override;

  private:
    struct Search;

    /// Continues with the remaining agents of the search, then with the windows' classes.
    void proceed(const std::shared_ptr<Search>& search);
    /// Activates the window in which this process runs; returns whether there is one.
    [[nodiscard]] bool activateWindow(pid_t process) const;
    /// Queries the tmux server in which the agent `process` runs, and proceeds if there is no reply.
    void askTmux(const std::string& socket, pid_t process, const std::shared_ptr<Search>& search);
    /// Runs tmux for a few seconds at most. `finished` is called with its output, which is empty if it
    /// failed.
    void runTmux(const std::vector<std::string>& arguments, std::function<void(std::string output)> finished);

    ProcessTable processes_;
    QObject context_;
};

} // namespace corvane
