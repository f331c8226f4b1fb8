#include "Desktop/Accessibility/AssistiveDesktop.h"

#include "Desktop/Support/Starvation.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace corvane::test {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds startTimeout{30};
constexpr std::chrono::seconds answerTimeout{10};
constexpr std::chrono::seconds hopelessTimeout{1};

bool contains(const std::vector<std::string>& lines, std::string_view text) {
    return std::any_of(lines.begin(), lines.end(),
                       [text](const std::string& line) { return line.find(text) != std::string::npos; });
}

std::string busLauncher() {
    for (const char* const path : {"/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi-bus-launcher"}) {
        if (fs::exists(path)) return path;
    }
    throw std::runtime_error("at-spi-bus-launcher is not installed (package at-spi2-core)");
}

} // namespace

std::vector<std::string> AssistiveDesktop::logLines(const std::string& name) const {
    std::istringstream text(fileBytes(session_.home().parent_path() / (name + ".log")).value_or(""));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

void AssistiveDesktop::startBus() {
    fs::remove_all(session_.home().parent_path() / "run/at-spi"); // of one that was killed
    bus_ = session_.run({busLauncher(), "--launch-immediately"}, "accessibility-bus");
    // It owns its name on the session bus once it replies there.
    const auto replies = [this] {
        return session_
                   .run({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                         "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress"},
                        "accessibility-address")
                   ->wait(startTimeout) == 0;
    };
    if (!waitUntil(startTimeout, [&] { return !bus_->isRunning() || replies(); }) || !bus_->isRunning())
        throw std::runtime_error("the accessibility bus did not start");
}

void AssistiveDesktop::signalBus(int number, const std::string& program) const {
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const auto process = static_cast<pid_t>(std::stol(name));
        const std::string path = fileBytes(entry.path() / "cmdline").value_or("");
        const std::string command = path.substr(0, path.find('\0'));
        if (getpgid(process) == bus_->id() && fs::path(command).filename() == program) {
            kill(process, number);
            return;
        }
    }
    throw std::runtime_error(program + " does not run");
}

void AssistiveDesktop::startListener() {
    fs::remove(session_.home().parent_path() / "listener.log");
    listener_ = session_.run({CORVANE_ASSISTIVE_FOLDER "/assistive", "listen"}, "listener");
    if (!waitUntil(startTimeout, [&] { return contains(logLines("listener"), "ready"); })) {
        throw std::runtime_error("the listener did not start: " +
                                 fileBytes(session_.home().parent_path() / "listener.log").value_or(""));
    }
}

void AssistiveDesktop::waitForApplication() {
    if (!waitUntil(startTimeout, [&] { return contains(logLines("listener"), "application"); }))
        throw std::runtime_error("the application did not come to the accessibility bus");
}

void AssistiveDesktop::startListenerToJoiningApplication() {
    startListener();
    waitForApplication();
    listener_.reset();
    startListener();
    waitForApplication();
}

std::vector<std::string> AssistiveDesktop::heard() const {
    std::vector<std::string> lines = logLines("listener");
    std::erase_if(lines, [](const std::string& line) { return line.find('\t') == std::string::npos; });
    return lines;
}

std::vector<std::string> AssistiveDesktop::announcements() const {
    std::vector<std::string> lines = heard();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("name\t"); });
    return lines;
}

bool AssistiveDesktop::assist(std::vector<std::string> arguments, const std::string& log) {
    fs::remove(session_.home().parent_path() / (log + ".log"));
    arguments.insert(arguments.begin(), CORVANE_ASSISTIVE_FOLDER "/assistive");
    return session_.run(std::move(arguments), log)->wait(startTimeout) == 0;
}

std::vector<std::string> AssistiveDesktop::tree() {
    if (!assist({"tree"}, "tree")) throw std::runtime_error("the banners' elements cannot be read");
    return logLines("tree");
}

bool AssistiveDesktop::pressButton(const std::string& button, const std::string& project) {
    return assist({"press", button, project}, "press");
}

void AssistiveDesktop::startFollower() {
    follower_ = session_.run({CORVANE_ASSISTIVE_FOLDER "/assistive", "follow"}, "follower");
    if (!waitUntil(startTimeout, [&] { return contains(logLines("follower"), "ready"); }))
        throw std::runtime_error("the listener that follows the keyboard did not start");
    if (!waitUntil(startTimeout, [&] { return contains(logLines("follower"), "application"); }))
        throw std::runtime_error("the application does not know of the listener that follows the keyboard");
}

std::vector<std::string> AssistiveDesktop::followed() const {
    return logLines("follower");
}

void AssistiveDesktop::press(const std::string& key) {
    EXPECT_EQ(session_.run({"xdotool", "key", key}, "xdotool")->wait(startTimeout), 0);
}

testing::AssertionResult AssistiveDesktop::press(const std::string& key, const std::string& line) {
    const auto before = static_cast<std::ptrdiff_t>(followed().size());
    press(key);
    // Once a step has failed most others do, and with a long wait for each of them CTest would end the
    // program before it can clean up.
    const std::chrono::seconds timeout = testing::Test::HasFailure() ? hopelessTimeout : answerTimeout;
    std::vector<std::string> since;
    if (waitUntil(timeout, [&] {
            const std::vector<std::string> all = followed();
            since.assign(all.begin() + before, all.end());
            return std::find(since.begin(), since.end(), line) != since.end();
        }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << key << " should report: " << line << "\nbut reported: " << testing::PrintToString(since);
}

testing::AssertionResult AssistiveDesktop::opensMenu() {
    EXPECT_EQ(session_.run({"xdotool", "keydown", "alt"}, "xdotool")->wait(startTimeout), 0);
    // Once the application replies it has seen that key. When both keys arrive together, Qt opens the menu
    // first, and the Alt key closes it again.
    static_cast<void>(window());
    const auto opened = press("f", "focus\tmenu item\tSessions\t");
    EXPECT_EQ(session_.run({"xdotool", "keyup", "alt"}, "xdotool")->wait(startTimeout), 0);
    return opened;
}

testing::AssertionResult AssistiveDesktop::opensPanel() {
    // The panel closes itself if it has not received the focus within a second, as when the window manager is
    // starved.
    constexpr auto starved = std::chrono::milliseconds(500);
    constexpr int mostAttempts = 3;
    const std::size_t before = session_.screen().managedWindows("corvane").size();
    for (int attempt = 1;; ++attempt) {
        if (const auto opened = opensMenu(); !opened) return opened;
        Starvation starvation(session_.painters());
        press("Return");
        const auto result = hasKeyboard(before + 1);
        if (result || attempt == mostAttempts || starvation.soFar() < starved) return result;
    }
}

testing::AssertionResult AssistiveDesktop::hasKeyboard(std::size_t windows) {
    std::vector<std::uint32_t> present;
    std::uint32_t active = 0;
    if (waitUntil(answerTimeout, [&] {
            present = session_.screen().managedWindows("corvane");
            active = session_.screen().activeWindow();
            return present.size() == windows &&
                   std::find(present.begin(), present.end(), active) != present.end() &&
                   session_.screen().hasFocus(active);
        }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "windows " << testing::PrintToString(present) << ", active " << active;
}

testing::AssertionResult AssistiveDesktop::opensMainWindow() {
    const std::size_t before = session_.screen().managedWindows("corvane").size();
    if (session_.run({CORVANE_PROGRAM}, "second")->wait(startTimeout) != 0)
        return testing::AssertionFailure() << "the second start failed";
    const auto result = hasKeyboard(before + 1);
    // By then the application has handled the focus, and has registered on the accessibility bus.
    if (result) static_cast<void>(window());
    return result;
}

testing::AssertionResult AssistiveDesktop::opensSettings() {
    const std::uint32_t before = session_.screen().activeWindow();
    const std::size_t count = session_.screen().managedWindows("corvane").size();
    if (const auto opened = press("ctrl+comma", "focus\tfiller\tCorvane Settings\t"); !opened) return opened;
    // The application may report the focus before the window manager reports the active window.
    if (!waitUntil(answerTimeout, [&] { return session_.screen().activeWindow() != before; }))
        return testing::AssertionFailure() << "the settings are not the active window";
    return hasKeyboard(count + 1);
}

std::vector<std::string> AssistiveDesktop::window() {
    // The window manager may not have given it the focus yet.
    if (!waitUntil(startTimeout, [&] { return assist({"window"}, "window"); }))
        throw std::runtime_error("no window of the application has the keyboard");
    return logLines("window");
}

Rect AssistiveDesktop::place(const std::string& name) {
    if (!waitUntil(startTimeout, [&] { return assist({"place", name}, "place"); }))
        throw std::runtime_error("there is no control " + name);
    Rect area;
    std::istringstream(logLines("place").at(0)) >> area.x >> area.y >> area.width >> area.height;
    return area;
}

void AssistiveDesktop::startOrca() {
    // Orca does not start if the same user already runs one, perhaps in a session of their own.
    const fs::path tools = session_.home() / "tools";
    writeFile(tools / "pgrep", "#!/bin/sh\nexit 1\n");
    fs::permissions(tools / "pgrep", fs::perms::owner_all);
    const char* const path = std::getenv("PATH");
    const std::string log = (session_.home().parent_path() / "orca-debug.log").string();
    orca_ = session_.run({CORVANE_ASSISTIVE_FOLDER "/orca-with-log", log}, "orca",
                         {"PATH=" + tools.string() + ":" + (path == nullptr ? "" : path)});
    const bool isUp = waitUntil(startTimeout, [&] {
        const std::vector<std::string> lines = logLines("orca-debug");
        return contains(lines, "Startup complete notification made") ||   // Orca 43
               contains(lines, "ORCA: Starting Atspi main event loop") || // Orca 48
               !orca_->isRunning();
    });
    if (!isUp || !orca_->isRunning()) {
        throw std::runtime_error("Orca did not start: " +
                                 fileBytes(session_.home().parent_path() / "orca.log").value_or(""));
    }
}

void AssistiveDesktop::meetApplication() {
    if (!assist({"meet"}, "meet"))
        throw std::runtime_error("the application does not come to the accessibility bus");
}

std::vector<std::string> AssistiveDesktop::spoken() const {
    constexpr std::string_view mark = "SPEECH OUTPUT: '";
    std::vector<std::string> result;
    for (const std::string& line : logLines("orca-debug")) {
        const std::size_t start = line.find(mark);
        // The voice follows the words: at once in Orca 43, after a space in Orca 48.
        const std::size_t end = std::min(line.rfind("'{'"), line.rfind("' {'"));
        if (start == std::string::npos || end == std::string::npos) continue;
        const std::string text = line.substr(start + mark.size(), end - start - mark.size());
        if (text != "Screen reader on.") result.push_back(text);
    }
    return result;
}

} // namespace corvane::test
