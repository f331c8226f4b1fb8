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

/// Terminals by the agents that run in them, else applications by the X11 class of their windows.
///
/// An agent's window is that of the nearest ancestor of its process that has one. Of a terminal whose windows
/// share one process, it is the one that the agent was told of by WINDOWID; where the terminal does not tell,
/// the one that was last on top. Inside tmux, whose server is nobody's child, the way goes through a client;
/// tmux is asked for it, and told to show the agent's pane, but not waited for.
class LinuxApplications : public Applications {
  public:
    void activate(const Terminal& terminal, Report report) override;

  private:
    struct Search;

    /// Goes on with the agents of the search that are left, then with the windows' classes.
    void proceed(const std::shared_ptr<Search>& search);
    /// Activates the window in which this process runs; whether there is one.
    [[nodiscard]] bool activateWindow(pid_t process) const;
    /// Asks the tmux server in which the agent `process` runs, and proceeds without an answer.
    void askTmux(const std::string& socket, pid_t process, const std::shared_ptr<Search>& search);
    /// Runs tmux for a few seconds at most. `finished` is called with what it printed, which is nothing when
    /// it failed.
    void runTmux(const std::vector<std::string>& arguments, std::function<void(std::string output)> finished);

    ProcessTable processes_;
    QObject context_;
};

} // namespace corvane
