#include "Desktop/Support/DesktopSession.h"

#include "Agents/HookScript.h"
#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/UsedFiles.h"
#include "Support/MessageBus.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace corvane::test {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds startTimeout{20};

std::string replaced(std::string text, std::string_view old, std::string_view by) {
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + by.size()))
        text.replace(at, old.size(), by);
    return text;
}

// A payload with another value for its "session_id".
std::string withSession(std::string payload, std::string_view session) {
    constexpr std::string_view key = R"("session_id":")";
    const std::size_t start = payload.find(key);
    if (start == std::string::npos) throw std::runtime_error("the payload has no session_id");
    const std::size_t value = start + key.size();
    return payload.replace(value, payload.find('"', value) - value, session);
}

std::string environmentValue(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

} // namespace

DesktopSession::DesktopSession(const std::string& windowManager, Compositor compositor)
    : home_(scratch_ / "home") {
    fs::create_directories(scratch_ / "tmp");
    fs::create_directories(scratch_ / "run");
    fs::permissions(scratch_ / "run", fs::perms::owner_all);
    writeFile(home_ / ".config/fontconfig/fonts.conf",
              R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <alias><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
  <alias><family>monospace</family><prefer><family>Noto Sans Mono</family></prefer></alias>
</fontconfig>
)");
    // As for a user who has completed onboarding.
    writeFile(home_ / ".config/Corvane/Corvane.conf", "[General]\nhasCompletedOnboarding=true\n");
    // Otherwise the user would have to place each window, and it requests a font that servers may lack.
    writeFile(home_ / ".twmrc", R"(RandomPlacement
TitleFont "fixed"
MenuFont "fixed"
IconFont "fixed"
ResizeFont "fixed"
IconManagerFont "fixed"
)");
    HookScript::install(paths());
    startBus();
    if (windowManager == "sway") {
        startSway();
    } else if (windowManager == "kwin_wayland") {
        startWaylandKWin();
    } else {
        startServer();
        startWindowManager(windowManager, compositor);
    }
}

DesktopSession::~DesktopSession() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    const bool hasPicture = variables_.empty();
    if (testing::Test::HasFailure() && screen_ && hasPicture && test != nullptr) {
        const std::string name =
            replaced(std::string(test->test_suite_name()) + "." + test->name(), "/", "-");
        const fs::path picture = fs::path(CORVANE_FAILURE_PICTURES) / (name + ".png");
        try {
            fs::create_directories(picture.parent_path());
            screen_->screen().save(picture);
            ADD_FAILURE() << "the screen at the end of the test: " << picture.string();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "no picture of the failure: " << error.what();
        }
    }
    if (testing::Test::HasFailure()) reportLogs();
    recordUsedFiles(leftOver());
    stopApplication();
    compositor_.reset();
    stopSway();
    settings_.reset();
    // The latest first, so that none loses its display before it is asked to end.
    while (!processes_.empty())
        processes_.pop_back();
    std::vector<pid_t> left;
    waitUntil(std::chrono::seconds(10), [&] {
        left = leftOver();
        return left.empty();
    });
    for (const pid_t process : left) {
        ADD_FAILURE() << "process " << process << " is left: "
                      << fileBytes(fs::path("/proc") / std::to_string(process) / "comm").value_or("");
        kill(process, SIGKILL);
    }
}

// What the programs have printed is lost with the scratch folder.
void DesktopSession::reportLogs() const {
    constexpr std::size_t mostBytes = 4000;
    for (const auto& entry : fs::directory_iterator(scratch_.path())) {
        if (entry.path().extension() != ".log") continue;
        const std::string text = fileBytes(entry.path()).value_or("");
        if (text.empty()) continue;
        std::cout << "--- " << entry.path().filename().string() << "\n"
                  << text.substr(text.size() - std::min(text.size(), mostBytes)) << std::endl;
    }
}

Command DesktopSession::command(std::vector<std::string> arguments, const std::string& log,
                                const std::vector<std::string>& variables) const {
    Command result{std::move(arguments), {}, home_, {}, scratch_ / (log + ".log"), -1};
    result.environment = {
        "PATH=" + environmentValue("PATH"),
        "HOME=" + home_.string(),
        "LANG=C.UTF-8",
        "TMPDIR=" + (scratch_ / "tmp").string(),
        "XDG_CONFIG_HOME=" + (home_ / ".config").string(),
        "XDG_DATA_HOME=" + (home_ / ".local/share").string(),
        "XDG_CACHE_HOME=" + (home_ / ".cache").string(),
        "XDG_STATE_HOME=" + (home_ / ".local/state").string(),
        "XDG_RUNTIME_DIR=" + (scratch_ / "run").string(),
        "DBUS_SESSION_BUS_ADDRESS=unix:path=" + (scratch_ / "run/bus").string(),
        "DISPLAY=" + display_,
    };
    result.environment.insert(result.environment.end(), variables_.begin(), variables_.end());
    for (const std::string& variable : variables) {
        const std::string name = variable.substr(0, variable.find('=') + 1);
        std::erase_if(result.environment, [&](const std::string& old) { return old.starts_with(name); });
        result.environment.push_back(variable);
    }
    return result;
}

ChildProcess& DesktopSession::start(std::vector<std::string> arguments, const std::string& log,
                                    const std::vector<std::string>& variables) {
    return processes_.emplace_back(command(std::move(arguments), log, variables));
}

std::unique_ptr<ChildProcess> DesktopSession::run(std::vector<std::string> arguments, const std::string& log,
                                                  const std::vector<std::string>& variables) {
    return std::make_unique<ChildProcess>(command(std::move(arguments), log, variables));
}

void DesktopSession::startBus() {
    // No services: nothing is started by D-Bus activation.
    writeFile(scratch_ / "bus.conf", busConfiguration(scratch_ / "run/bus"));
    servers_[static_cast<std::size_t>(Server::bus)] =
        &start({"dbus-daemon", "--nofork", "--config-file=" + (scratch_ / "bus.conf").string()}, "bus");
    if (!waitUntil(startTimeout, [&] { return acceptsConnections(scratch_ / "run/bus"); }))
        throw std::runtime_error("the message bus did not start");
}

std::shared_ptr<void> DesktopSession::holdBus() {
    ChildProcess& bus = server(Server::bus);
    bus.signal(SIGSTOP);
    return {&bus, [](ChildProcess* held) { held->signal(SIGCONT); }};
}

void DesktopSession::restartBus() {
    fs::remove(scratch_ / "run/bus");
    startBus();
}

void DesktopSession::setMonitors(const std::vector<Rect>& monitors) {
    // The first one takes over the only output from the server's own monitor, which is removed by that.
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const Rect& area = monitors[i];
        constexpr int millimetres = 300; // not used, but it must not be 0
        const auto side = [](int pixels) {
            return std::to_string(pixels) + "/" + std::to_string(millimetres);
        };
        const auto process =
            run({"xrandr", "--setmonitor", (i == 0 ? "*monitor" : "monitor") + std::to_string(i),
                 side(area.width) + "x" + side(area.height) + "+" + std::to_string(area.x) + "+" +
                     std::to_string(area.y),
                 i == 0 ? "screen" : "none"},
                "xrandr");
        if (process->wait(startTimeout) != 0)
            throw std::runtime_error("no monitor: " + fileBytes(scratch_ / "xrandr.log").value_or(""));
    }
}

void DesktopSession::setSettings(const std::string& lines) {
    const fs::path file = home_ / ".xsettingsd";
    writeFile(file, lines);
    const std::string before = screen_->settings();
    const auto isPublished = [&] { return screen_->settings() != before; };
    bool isDone = false;
    if (!settings_) {
        settings_ = run({"xsettingsd", "-c", file.string()}, "settings");
        isDone = waitUntil(startTimeout, isPublished);
    }
    // The running one loses a signal that arrives while it is not yet waiting for one.
    for (int attempt = 0; !isDone && attempt < 10; ++attempt) {
        settings_->signal(SIGHUP);
        isDone = waitUntil(std::chrono::seconds(2), isPublished);
    }
    if (!isDone)
        throw std::runtime_error("the settings are not published: " +
                                 fileBytes(scratch_ / "settings.log").value_or(""));
}

void DesktopSession::startApplication(std::vector<std::string> variables, Start start) {
    for (const char* const name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (std::getenv(name) != nullptr) variables.push_back(name + ("=" + environmentValue(name)));
    }
    // A file that is not an event is deleted by the first drain.
    writeFile(paths().events() / "0.event", "");
    std::vector<std::string> arguments{CORVANE_PROGRAM};
    if (start == Start::atLogin) arguments.emplace_back("--autostart");
    application_ = run(arguments, "application", variables);
    if (!waitUntil(startTimeout, [&] { return inbox().empty() || !application_->isRunning(); }) ||
        !application_->isRunning())
        throw std::runtime_error("the application did not start: " + applicationOutput());
}

// A fault while it quits, such as one that a sanitizer finds, shows in its exit status alone.
void DesktopSession::stopApplication() {
    if (application_ && !application_->isRunning()) {
        // No test sends it one of these.
        const int signal = application_->wait(std::chrono::milliseconds(0)).value_or(0) - 128;
        if (signal == SIGSEGV || signal == SIGABRT || signal == SIGBUS || signal == SIGFPE ||
            signal == SIGILL)
            ADD_FAILURE() << "the application crashed with signal " << signal << "\n" << applicationOutput();
    } else if (application_) {
        application_->stop();
        const int status = application_->wait(std::chrono::milliseconds(0)).value_or(0);
        // What does not end in time, as on a busy machine, was killed.
        if (status != 0 && status != 128 + SIGKILL)
            ADD_FAILURE() << "the application quits with status " << status << "\n" << applicationOutput();
    }
    application_.reset();
}

std::string DesktopSession::applicationOutput() const {
    return fileBytes(scratch_ / "application.log").value_or("");
}

std::string DesktopSession::windowManagerOutput() const {
    return fileBytes(scratch_ / "wm.log").value_or("");
}

void DesktopSession::runHook(const std::vector<std::string>& arguments, const std::string& input,
                             std::string_view project, const std::vector<std::string>& variables) {
    fs::create_directories(home_ / project);
    writeFile(scratch_ / "payload", input);
    fs::remove(scratch_ / "hook.log");
    std::vector<std::string> terminal{"TERM_PROGRAM=ghostty"};
    terminal.insert(terminal.end(), variables.begin(), variables.end());
    Command hook = command(arguments, "hook", terminal);
    hook.folder = home_ / project;
    hook.input = scratch_ / "payload";
    ChildProcess process(hook);
    EXPECT_EQ(process.wait(startTimeout), 0);
    EXPECT_EQ(fileBytes(scratch_ / "hook.log"), "");
}

void DesktopSession::claude(std::string_view payload, std::string_view session, std::string_view project,
                            const std::vector<std::string>& variables) {
    const std::string bytes =
        withSession(testData("agent-payloads/claude-" + std::string(payload) + ".json"), session);
    runHook({"/bin/sh", "-c", HookScript::command(AgentKind::claude, paths())},
            replaced(bytes, "/home/you/project", (home_ / project).string()), project, variables);
}

void DesktopSession::codex(std::string_view payload, std::string_view project,
                           const std::vector<std::string>& variables) {
    const std::string bytes =
        testData("agent-payloads/codex-agent-turn-complete-" + std::string(payload) + ".json");
    runHook({paths().hookScript().string(), "codex",
             replaced(bytes, "/home/you/project", (home_ / project).string())},
            "", project, variables);
}

std::vector<fs::path> DesktopSession::inbox() const {
    std::vector<fs::path> result;
    for (const auto& entry : fs::directory_iterator(paths().events())) {
        if (entry.path().extension() == ".event") result.push_back(entry.path());
    }
    return result;
}

std::uint32_t DesktopSession::startTerminal(bool fullScreen, const std::string& geometry) {
    std::vector<std::string> arguments{"xterm"};
    if (!geometry.empty()) arguments.insert(arguments.end(), {"-geometry", geometry});
    if (fullScreen) arguments.emplace_back("-fullscreen");
    arguments.insert(arguments.end(), {"-e", "sh", "-c", "stty raw -echo; exec cat >\"$HOME/keys\""});
    start(arguments, "xterm");
    std::vector<std::uint32_t> windows;
    const bool isReady = waitUntil(startTimeout, [&] {
        windows = screen_->managedWindows("xterm");
        // Some window managers report a window as active a little before it gets the focus.
        return windows.size() == 1 && screen_->activeWindow() == windows.front() &&
               screen_->focusedWindow() == windows.front() && fs::exists(home_ / "keys") &&
               (!fullScreen || screen_->geometry(windows.front()) == screen_->screenArea());
    });
    if (!isReady) throw std::runtime_error("no terminal came up with the focus");
    return windows.front();
}

std::string DesktopSession::typed() const {
    return fileBytes(home_ / "keys").value_or("");
}

std::unique_ptr<ChildProcess> DesktopSession::type(const std::string& letters,
                                                   std::chrono::milliseconds between) {
    return run({"xdotool", "type", "--delay", std::to_string(between.count()), letters}, "xdotool");
}

void DesktopSession::point(Rect area) {
    const auto process = run(
        {"xdotool", "mousemove", std::to_string(area.middleX()), std::to_string(area.middleY())}, "xdotool");
    EXPECT_EQ(process->wait(startTimeout), 0);
}

void DesktopSession::pointAway() {
    const Rect screen = screen_->screenArea();
    point({screen.x, screen.y + screen.height - 2, 2, 2});
}

void DesktopSession::click(Rect area) {
    const auto process = run({"xdotool", "mousemove", std::to_string(area.middleX()),
                              std::to_string(area.middleY()), "click", "1"},
                             "xdotool");
    EXPECT_EQ(process->wait(startTimeout), 0);
}

std::vector<pid_t> DesktopSession::painters() const {
    std::vector<pid_t> result;
    for (const ChildProcess* const server : servers_) {
        if (server != nullptr) result.push_back(server->id());
    }
    for (const auto* const process : {&compositor_, &application_}) {
        if (*process) result.push_back((*process)->id());
    }
    return result;
}

testing::AssertionResult DesktopSession::shows(std::size_t waiting, std::size_t done,
                                               std::chrono::milliseconds timeout) {
    std::optional<std::string> fault;
    const bool seen = waitUntil(timeout, [&] {
        fault = screenFault(*screen_, waiting, done);
        return !fault;
    });
    if (seen) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "after " << timeout.count() << " ms " << *fault
           << (application_ && !application_->isRunning() ? "; the application has ended" : "") << "\n"
           << applicationOutput();
}

testing::AssertionResult DesktopSession::standIn(Rect area) {
    std::optional<std::string> fault;
    const bool seen = waitUntil(patience, [&] {
        const std::vector<Banner> banners = screen_->banners();
        fault = banners.empty() ? "there is no banner" : layoutFault(banners, area);
        return !fault;
    });
    return seen ? testing::AssertionSuccess() : testing::AssertionFailure() << *fault;
}

testing::AssertionResult DesktopSession::staysEmpty(std::chrono::milliseconds duration) {
    if (waitUntil(duration, [&] { return screen_->windowCount() > 0; }))
        return testing::AssertionFailure() << "a window of the application appeared";
    return testing::AssertionSuccess();
}

std::size_t DesktopSession::running(std::string_view name) const {
    const std::vector<pid_t> processes = leftOver();
    return static_cast<std::size_t>(std::ranges::count_if(processes, [name](pid_t process) {
        return fileBytes("/proc/" + std::to_string(process) + "/comm") == std::string(name) + "\n";
    }));
}

std::vector<pid_t> DesktopSession::leftOver() const {
    std::vector<pid_t> result;
    const std::string mark = "HOME=" + home_.string();
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const std::optional<std::string> environment = fileBytes(entry.path() / "environ");
        if (environment && environment->find(mark) != std::string::npos)
            result.push_back(static_cast<pid_t>(std::stol(name)));
    }
    return result;
}

std::vector<std::string> windowManagers() {
    std::vector<std::string> names{"openbox", "xfwm4"};
    std::istringstream words(environmentValue("CORVANE_TEST_WINDOW_MANAGERS"));
    for (std::string name; words >> name;)
        names.push_back(name);
    return names;
}

std::vector<std::string> focusingWindowManagers() {
    std::vector<std::string> names = windowManagers();
    std::erase(names, "metacity");
    return names;
}

} // namespace corvane::test
