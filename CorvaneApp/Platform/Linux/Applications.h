#pragma once

#include "Platform/Applications.h"
#include "Platform/Linux/ProcessTable.h"
#include "Platform/Linux/Tmux.h"
#include "Platform/Linux/WindowRaiser.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

class QProcess;

namespace corvane {

/// Finds terminals by the agents that run in them, else applications by the class of their windows.
///
/// An agent's window is that of the nearest ancestor of its process that has one. If the terminal's windows
/// share one process, it is the window in the agent's WINDOWID; without that variable, one whose title names
/// the agent's folder or the agent, else the most recently used. Inside tmux, whose server is not a
/// descendant of a terminal, the search starts at a client; tmux is queried for its clients, and told to show
/// the agent's pane, asynchronously.
class LinuxApplications : public Applications {
  public:
    /// Returns the ways to raise a window; each is tried only if those before it find no window.
    using Raisers = std::function<std::vector<std::shared_ptr<WindowRaiser>>()>;

    /// `raisers` is called at each activation, since the available ways may change.
    explicit LinuxApplications(Raisers raisers = windowRaisers, ProcessTable processes = ProcessTable());

    void activate(const Terminal& terminal, Report report) override;

  private:
    struct Search;
    using Continuation = std::function<void(bool isFound)>;

    /// Continues with the remaining agents of the search, then with the windows' classes.
    void proceed(const std::shared_ptr<Search>& search);
    /// Activates the window in which this process runs, if there is one.
    void activateWindow(const std::shared_ptr<Search>& search, pid_t process, Continuation next);
    /// Tries the search's raisers from `index` on.
    void raise(const std::shared_ptr<Search>& search, const WindowSearch& wanted, std::size_t index,
               Continuation next);
    /// Queries the tmux server in which the agent `process` runs, and proceeds if there is no reply.
    void askTmux(const std::string& socket, pid_t process, const std::shared_ptr<Search>& search);
    /// Shows the agent in the first view, from `index` on, whose client has a window; proceeds if none has
    /// one.
    void showView(const std::string& socket, const std::vector<tmux::View>& views, std::size_t index,
                  const std::shared_ptr<Search>& search);
    /// Runs tmux for a few seconds at most. `finished` is called with its output, which is empty if it
    /// failed.
    void runTmux(const std::vector<std::string>& arguments, std::function<void(std::string output)> finished);

    Raisers raisers_;
    ProcessTable processes_;
    QObject context_;
};

} // namespace corvane
