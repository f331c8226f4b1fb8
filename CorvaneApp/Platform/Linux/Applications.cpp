#include "Platform/Linux/Applications.h"

#include "Platform/Linux/Tmux.h"
#include "Platform/Linux/XReply.h"
#include "Style/Utf8.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace corvane {

namespace {

// The class part of WM_CLASS by bundle identifier. An identifier that is not listed is tried as a class
// itself: many programs name their windows so.
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

/// Has its own connection: works whatever window system Qt uses.
class WindowList {
  public:
    WindowList() {
        connection_ = xcb_connect(nullptr, &screen_);
        isOpen_ = xcb_connection_has_error(connection_) == 0 &&
                  xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) != 0;
    }
    WindowList(const WindowList&) = delete;
    WindowList& operator=(const WindowList&) = delete;
    ~WindowList() {
        if (isOpen_) xcb_ewmh_connection_wipe(&ewmh_);
        xcb_disconnect(connection_);
    }

    /// The topmost window of one of these classes, ignoring case.
    [[nodiscard]] std::optional<xcb_window_t> topmost(const std::vector<QString>& classes) {
        return topmost([&](xcb_window_t window) {
            const QString name = windowClass(window);
            return std::any_of(classes.begin(), classes.end(), [&name](const QString& wanted) {
                return name.compare(wanted, Qt::CaseInsensitive) == 0;
            });
        });
    }

    /// A window of this process, going by the process ID that the window reports: `preferred` if it is one,
    /// else the topmost.
    [[nodiscard]] std::optional<xcb_window_t> find(pid_t process, std::optional<xcb_window_t> preferred) {
        const auto isOwn = [&](xcb_window_t window) {
            const std::optional<std::uint32_t> owner = cardinal(xcb_ewmh_get_wm_pid(&ewmh_, window));
            return owner && static_cast<pid_t>(*owner) == process;
        };
        const std::optional<xcb_window_t> exact = topmost(
            [&](xcb_window_t window) { return window == preferred.value_or(XCB_NONE) && isOwn(window); });
        return exact ? exact : topmost(isOwn);
    }

    /// Raises and focuses a window, switching to its workspace first: window managers differ in how they
    /// handle a request for a window on another workspace.
    void activate(xcb_window_t window) {
        constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
        const std::optional<std::uint32_t> desktop = cardinal(xcb_ewmh_get_wm_desktop(&ewmh_, window));
        const std::optional<std::uint32_t> current = cardinal(xcb_ewmh_get_current_desktop(&ewmh_, screen_));
        if (desktop && *desktop != everyDesktop && desktop != current) {
            xcb_ewmh_request_change_current_desktop(&ewmh_, screen_, *desktop, XCB_CURRENT_TIME);
        }
        // As a pager: some window managers refuse the request from an ordinary application.
        xcb_ewmh_request_change_active_window(&ewmh_, screen_, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                              XCB_CURRENT_TIME, XCB_WINDOW_NONE);
        // A round trip: the reply shows that the requests have arrived.
        const x11::Reply<xcb_get_input_focus_reply_t> answer(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

  private:
    template <typename Predicate>
    [[nodiscard]] std::optional<xcb_window_t> topmost(Predicate isWanted) {
        if (!isOpen_) return std::nullopt;
        const std::vector<xcb_window_t> windows = managed();
        const auto found = std::find_if(windows.rbegin(), windows.rend(), isWanted);
        return found != windows.rend() ? std::optional(*found) : std::nullopt;
    }

    /// The managed windows, the topmost last.
    [[nodiscard]] std::vector<xcb_window_t> managed() {
        // Both lists: some window managers report the stacking order only once it has changed.
        std::vector<xcb_window_t> result;
        for (const auto cookie : {xcb_ewmh_get_client_list(&ewmh_, screen_),
                                  xcb_ewmh_get_client_list_stacking(&ewmh_, screen_)}) {
            xcb_ewmh_get_windows_reply_t reply;
            // Both replies have the same layout.
            if (xcb_ewmh_get_windows_reply(&ewmh_, cookie, &reply, nullptr) == 0) continue;
            result.insert(result.end(), reply.windows, reply.windows + reply.windows_len);
            xcb_ewmh_get_windows_reply_wipe(&reply);
        }
        return result;
    }

    [[nodiscard]] QString windowClass(xcb_window_t window) {
        xcb_icccm_get_wm_class_reply_t reply;
        if (xcb_icccm_get_wm_class_reply(connection_, xcb_icccm_get_wm_class(connection_, window), &reply,
                                         nullptr) == 0) {
            return {};
        }
        QString name = QString::fromLocal8Bit(reply.class_name);
        xcb_icccm_get_wm_class_reply_wipe(&reply);
        return name;
    }

    [[nodiscard]] std::optional<std::uint32_t> cardinal(xcb_get_property_cookie_t cookie) {
        std::uint32_t value = 0;
        if (xcb_ewmh_get_cardinal_reply(&ewmh_, cookie, &value, nullptr) == 0) return std::nullopt;
        return value;
    }

    xcb_connection_t* connection_ = nullptr;
    int screen_ = 0;
    xcb_ewmh_connection_t ewmh_{};
    bool isOpen_ = false;
};

} // namespace

struct LinuxApplications::Search {
    Terminal terminal;
    std::vector<pid_t> agents; // candidates for the session's agent
    std::size_t next = 0;
    Report report;
};

void LinuxApplications::activate(const Terminal& terminal, Report report) {
    auto search = std::make_shared<Search>();
    search->terminal = terminal;
    search->agents = processes_.running(terminal.agent, terminal.directory);
    search->report = std::move(report);
    // Several agents may run in one directory: the session's own has the same terminal in its environment,
    // and is not a service that an agent has left behind.
    std::stable_partition(search->agents.begin(), search->agents.end(), [&](pid_t process) {
        return processes_.variable(process, "TERM_PROGRAM").value_or("") == terminal.program;
    });
    std::stable_partition(search->agents.begin(), search->agents.end(),
                          [this](pid_t process) { return processes_.hasTerminal(process); });
    proceed(search);
}

void LinuxApplications::proceed(const std::shared_ptr<Search>& search) {
    while (search->next < search->agents.size()) {
        const pid_t process = search->agents[search->next++];
        if (activateWindow(process)) {
            search->report(true);
            return;
        }
        if (const auto socket = tmux::socket(processes_.variable(process, "TMUX").value_or(""))) {
            askTmux(*socket, process, search);
            return;
        }
    }
    const std::optional<std::string>& bundleID = search->terminal.bundleID;
    WindowList windows;
    const std::optional<xcb_window_t> window = bundleID ? windows.topmost(classes(*bundleID)) : std::nullopt;
    if (window) windows.activate(*window);
    search->report(window.has_value());
}

bool LinuxApplications::activateWindow(pid_t process) const {
    // Many terminals pass their window's ID to the programs inside.
    std::optional<xcb_window_t> told;
    bool isNumber = false;
    const uint number =
        QString::fromStdString(processes_.variable(process, "WINDOWID").value_or("")).toUInt(&isNumber);
    if (isNumber) told = number;

    WindowList windows;
    for (const pid_t ancestor : processes_.ancestry(process)) {
        // The variable may be inherited from a terminal in which this one was started.
        if (const std::optional<xcb_window_t> window = windows.find(ancestor, told)) {
            windows.activate(*window);
            return true;
        }
    }
    return false;
}

void LinuxApplications::askTmux(const std::string& socket, pid_t process,
                                const std::shared_ptr<Search>& search) {
    runTmux(tmux::query(socket), [this, socket, process, search](const std::string& output) {
        const std::vector<tmux::View> views = tmux::views(
            tmux::parse(output), processes_.variable(process, "TMUX_PANE"), processes_.ancestry(process));
        const auto view = std::find_if(views.begin(), views.end(), [this](const tmux::View& candidate) {
            return activateWindow(candidate.client.process);
        });
        if (view == views.end()) {
            proceed(search);
            return;
        }
        const std::vector<std::string> selection = tmux::selection(socket, *view);
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
