#include "Platform/Linux/Applications.h"

#include "Platform/Linux/Tmux.h"
#include "Style/Utf8.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace corvane {

namespace {

// The class part of WM_CLASS by bundle identifier. The identifier itself is always tried too: many programs
// use it as the class of their windows.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> windowClasses{{
    {"com.mitchellh.ghostty", "com.mitchellh.ghostty"},
    {"dev.warp.Warp-Stable", "dev.warp.Warp"},
    {"com.microsoft.VSCode", "Code"},
    {"com.microsoft.VSCode", "code-oss"},
    {"com.github.wez.wezterm", "org.wezfurlong.wezterm"},
}};

std::vector<QString> classes(const std::string& bundleID) {
    std::vector<QString> result{QString::fromStdString(bundleID)};
    for (const auto& [identifier, windowClass] : windowClasses) {
        if (identifier == bundleID) result.push_back(fromUtf8(windowClass));
    }
    return result;
}

/// What titles are matched against.
WindowSearch hints(const Terminal& terminal) {
    WindowSearch result;
    result.directory = fromUtf8(terminal.directory);
    result.agent = fromUtf8(terminal.agent);
    return result;
}

} // namespace

struct LinuxApplications::Search {
    Terminal terminal;
    std::vector<std::shared_ptr<WindowRaiser>> raisers;
    std::vector<pid_t> agents; // candidates for the session's agent
    std::size_t next = 0;
    Report report;
};

LinuxApplications::LinuxApplications(Raisers raisers, ProcessTable processes)
    : raisers_(std::move(raisers))
    , processes_(std::move(processes)) {}

void LinuxApplications::activate(const Terminal& terminal, Report report) {
    auto search = std::make_shared<Search>();
    search->terminal = terminal;
    search->raisers = raisers_();
    search->agents = processes_.running(terminal.agent, terminal.directory);
    search->report = std::move(report);
    // Several agents may run in one directory: the session's own has the same TERM_PROGRAM in its
    // environment, and is not a background service that an agent has left behind.
    std::stable_partition(search->agents.begin(), search->agents.end(), [&](pid_t process) {
        return processes_.variable(process, "TERM_PROGRAM").value_or("") == terminal.program;
    });
    std::stable_partition(search->agents.begin(), search->agents.end(),
                          [this](pid_t process) { return processes_.hasTerminal(process); });
    proceed(search);
}

void LinuxApplications::proceed(const std::shared_ptr<Search>& search) {
    if (search->next < search->agents.size()) {
        const pid_t process = search->agents[search->next++];
        activateWindow(search, process, [this, search, process](bool isFound) {
            if (isFound) {
                search->report(true);
            } else if (const auto socket = tmux::socket(processes_.variable(process, "TMUX").value_or(""))) {
                askTmux(*socket, process, search);
            } else {
                proceed(search);
            }
        });
        return;
    }
    if (!search->terminal.bundleID) {
        search->report(false);
        return;
    }
    WindowSearch wanted = hints(search->terminal);
    wanted.classes = classes(*search->terminal.bundleID);
    raise(search, wanted, 0, search->report);
}

void LinuxApplications::activateWindow(const std::shared_ptr<Search>& search, pid_t process,
                                       Continuation next) {
    WindowSearch wanted = hints(search->terminal);
    wanted.processes = processes_.ancestry(process);
    // Many terminals pass their window's ID to the programs inside. The variable may be inherited from a
    // terminal in which this one was started.
    bool isNumber = false;
    const uint number =
        QString::fromStdString(processes_.variable(process, "WINDOWID").value_or("")).toUInt(&isNumber);
    if (isNumber) wanted.windowID = number;
    raise(search, wanted, 0, std::move(next));
}

void LinuxApplications::raise(const std::shared_ptr<Search>& search, const WindowSearch& wanted,
                              std::size_t index, Continuation next) {
    if (index == search->raisers.size()) {
        next(false);
        return;
    }
    search->raisers[index]->raise(wanted, context_,
                                  [this, search, wanted, index, next = std::move(next)](bool isFound) {
                                      if (isFound) {
                                          next(true);
                                      } else {
                                          raise(search, wanted, index + 1, next);
                                      }
                                  });
}

void LinuxApplications::askTmux(const std::string& socket, pid_t process,
                                const std::shared_ptr<Search>& search) {
    runTmux(tmux::query(socket), [this, socket, process, search](const std::string& output) {
        showView(socket,
                 tmux::views(tmux::parse(output), processes_.variable(process, "TMUX_PANE"),
                             processes_.ancestry(process)),
                 0, search);
    });
}

void LinuxApplications::showView(const std::string& socket, const std::vector<tmux::View>& views,
                                 std::size_t index, const std::shared_ptr<Search>& search) {
    if (index == views.size()) {
        proceed(search);
        return;
    }
    activateWindow(search, views[index].client.process, [this, socket, views, index, search](bool isFound) {
        if (!isFound) {
            showView(socket, views, index + 1, search);
            return;
        }
        const std::vector<std::string> selection = tmux::selection(socket, views[index]);
        if (!selection.empty()) runTmux(selection, [](const std::string& /*output*/) {});
        search->report(true);
    });
}

void LinuxApplications::runTmux(const std::vector<std::string>& arguments,
                                std::function<void(std::string output)> finished) {
    constexpr std::chrono::seconds patience{2};
    auto* const process = new QProcess(&context_);
    QStringList list;
    for (const std::string& argument : arguments)
        list.append(QString::fromStdString(argument));
    QObject::connect(process, &QProcess::finished, &context_,
                     [process, finished](int /*code*/, QProcess::ExitStatus status) {
                         process->deleteLater();
                         const QByteArray output = process->readAllStandardOutput();
                         finished(status == QProcess::NormalExit ? output.toStdString() : std::string());
                     });
    QObject::connect(process, &QProcess::errorOccurred, &context_,
                     [process, finished](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart) return; // else `finished` follows
                         process->deleteLater();
                         finished({});
                     });
    QTimer::singleShot(patience, process, &QProcess::kill);
    process->start(QStringLiteral("tmux"), list);
}

} // namespace corvane
