// The part of DesktopSession that starts X servers, their window managers and compositing managers.

#include "Desktop/Support/DesktopSession.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace corvane::test {

namespace {

constexpr std::chrono::seconds startTimeout{20};

} // namespace

std::string DesktopSession::startServerOnce() {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    Command server = command({"Xvfb", "-displayfd", std::to_string(pipe[1]), "-screen", "0", "1280x800x24",
                              "-nolisten", "tcp", "-noreset"},
                             "xvfb", {});
    server.inheritedDescriptor = pipe[1];
    servers_[static_cast<std::size_t>(Server::x)] = &processes_.emplace_back(server);
    close(pipe[1]);
    std::string number;
    // The server chooses the display number and reports it once it is ready.
    waitUntil(startTimeout, [&] {
        std::array<char, 16> bytes{};
        const ssize_t size = read(pipe[0], bytes.data(), bytes.size());
        if (size > 0) number.append(bytes.data(), static_cast<std::size_t>(size));
        return number.ends_with('\n') || size == 0;
    });
    close(pipe[0]);
    if (number.ends_with('\n')) {
        number.pop_back();
        return number;
    }
    processes_.pop_back();
    return {};
}

void DesktopSession::startServer() {
    // A server that ends at the same moment has left its number while its lock is still there; then the new
    // one fails.
    constexpr int mostAttempts = 5;
    std::string number;
    for (int attempt = 0; number.empty() && attempt < mostAttempts; ++attempt) {
        if (attempt > 0) std::this_thread::sleep_for(std::chrono::milliseconds(200));
        number = startServerOnce();
    }
    if (number.empty()) throw std::runtime_error("the X server did not start");
    display_ = ":" + number;
    screen_ = std::make_unique<XObserver>(display_);
    // On a separate connection, which leaves the pixmap behind.
    XObserver(display_).paintWallpaper();
}

void DesktopSession::startWindowManager(const std::string& name, Compositor compositor) {
    std::vector<std::string> arguments{name};
    std::vector<std::string> variables;
    const bool blendsByItself = name == "mutter" || compositor == Compositor::windowManager;
    if (name == "openbox") arguments.emplace_back("--sm-disable");
    if (name == "xfwm4") arguments.emplace_back(blendsByItself ? "--compositor=on" : "--compositor=off");
    if (name == "mutter") arguments.insert(arguments.end(), {"--x11", "--sm-disable"});
    if (name == "metacity") {
        arguments.emplace_back("--sm-disable");
        arguments.emplace_back(blendsByItself ? "--composite" : "--no-composite");
    }
    // OpenGL, even if it is only rendered in software.
    if (name == "kwin_x11") variables.emplace_back(blendsByItself ? "KWIN_COMPOSE=O2" : "KWIN_COMPOSE=N");
    ChildProcess& manager = start(arguments, "wm", variables);
    servers_[static_cast<std::size_t>(Server::windowManager)] = &manager;
    const auto isReady = [&] {
        return name == "twm" ? screen_->isManaged() : !screen_->windowManager().empty();
    };
    if (!waitUntil(startTimeout, [&] { return isReady() || !manager.isRunning(); }) || !manager.isRunning())
        throw std::runtime_error(name + " did not start: " + fileBytes(scratch_ / "wm.log").value_or(""));
    // Twm does not support such requests.
    // KWin 5.27 accepts the request and does not reply to it for a window that it does not manage.
    if (name != "twm" && name != "kwin_x11" && !screen_->windowManagerResponds(startTimeout))
        throw std::runtime_error(name + " does not respond: " + fileBytes(scratch_ / "wm.log").value_or(""));
    if (blendsByItself) {
        if (!blends()) throw std::runtime_error(name + " does not blend windows");
    } else if (compositor == Compositor::picom) {
        startCompositor();
    }
}

void DesktopSession::startCompositor() {
    compositor_ = run({"picom", "--config", "/dev/null", "--backend", "xrender"}, "picom");
    if (!blends()) throw std::runtime_error("the compositor did not start");
}

// It claims the display some time before it draws, and erases the screen in between.
bool DesktopSession::blends() {
    if (!waitUntil(startTimeout, [&] { return screen_->isComposited(); })) return false;
    constexpr Color cover{0x223344};
    constexpr int side = 8;
    constexpr int tolerance = 8;
    const Rect screen = screen_->screenArea();
    const Rect corner{screen.right() - side, screen.bottom() - side, side, side};
    const auto seen = [&] { return screen_->screen(corner).at(side / 2, side / 2); };
    const Color before = seen();
    Color blended;
    {
        XObserver probe(display_);
        probe.cover(corner, 0.5);
        if (!waitUntil(startTimeout, [&] {
                blended = seen();
                return !blended.isNear(before, tolerance) && !blended.isNear(cover, tolerance);
            }))
            return false;
    }
    return waitUntil(startTimeout, [&] { return !seen().isNear(blended, tolerance); });
}

void DesktopSession::stopCompositor() {
    compositor_.reset();
}

} // namespace corvane::test
