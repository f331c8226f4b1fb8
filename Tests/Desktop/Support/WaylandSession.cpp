// The part of DesktopSession that starts Wayland sessions.

#include "Desktop/Support/DesktopSession.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace corvane::test {

namespace {

constexpr std::chrono::seconds startTimeout{20};
constexpr const char* tellEnvironment =
    R"(env >"$HOME/environment.new" && mv "$HOME/environment.new" "$HOME/environment")";

// Sway refuses to run as root. In a namespace of its own, root is an ordinary user with root's files.
std::vector<std::string> asOrdinaryUser() {
    if (geteuid() != 0) return {};
    return {"unshare", "--user", "--map-user=1000", "--map-group=1000"};
}

} // namespace

bool canStartSway() {
    std::vector<std::string> arguments = asOrdinaryUser();
    if (arguments.empty()) return true;
    arguments.emplace_back("/bin/true");
    Command command;
    command.arguments = arguments;
    command.environment = {"PATH=/usr/bin:/bin"};
    return ChildProcess(command).wait(startTimeout) == 0;
}

void DesktopSession::startSway() {
    writeFile(home_ / "sway.conf", R"(output * resolution 1280x800
default_border none
focus_follows_mouse no
xwayland force
bar {
    position top
}
)" + std::string("exec ") + tellEnvironment +
                                       "\n");
    std::vector<std::string> arguments = asOrdinaryUser();
    arguments.insert(arguments.end(), {"sway", "-c", (home_ / "sway.conf").string()});
    start(arguments, "wm", {"WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman"});
    enterWayland();
    variables_.emplace_back("XDG_CURRENT_DESKTOP=sway");
}

void DesktopSession::startWaylandKWin() {
    // A copy has no file capabilities, with which some containers refuse to run it.
    const std::filesystem::path program = scratch_ / "kwin_wayland";
    std::filesystem::copy_file("/usr/bin/kwin_wayland", program);
    const std::filesystem::path session = home_ / "session";
    writeFile(session, std::string("#!/bin/sh\n") + tellEnvironment + "\n");
    std::filesystem::permissions(session, std::filesystem::perms::owner_all);
    start({program.string(), "--virtual", "--width", "1280", "--height", "800", "--xwayland",
           "--no-lockscreen", "--socket", "wayland-kwin", session.string()},
          "wm", {"KWIN_COMPOSE=Q", "QT_LOGGING_RULES=js=true"});
    enterWayland();
    variables_.emplace_back("XDG_CURRENT_DESKTOP=KDE");
}

void DesktopSession::enterWayland() {
    std::optional<std::string> environment;
    waitUntil(startTimeout, [&] { return (environment = fileBytes(home_ / "environment")).has_value(); });
    std::istringstream lines(environment.value_or(""));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("DISPLAY=")) display_ = line.substr(line.find('=') + 1);
        if (line.starts_with("WAYLAND_DISPLAY=") || line.starts_with("SWAYSOCK=")) variables_.push_back(line);
    }
    if (display_.empty() || variables_.empty())
        throw std::runtime_error("the Wayland session did not start: " + windowManagerOutput());
    variables_.emplace_back("XDG_SESSION_TYPE=wayland");
    screen_ = std::make_unique<XObserver>(display_);
}

// A signal would reach XWayland too, and sway might restart it before it exits itself.
void DesktopSession::stopSway() {
    const auto isSocket = [](const std::string& variable) { return variable.starts_with("SWAYSOCK="); };
    if (std::none_of(variables_.begin(), variables_.end(), isSocket)) return;
    run({"swaymsg", "exit"}, "swaymsg")->wait(startTimeout);
    processes_.back().wait(startTimeout);
}

} // namespace corvane::test
