#pragma once

#include "Desktop/Support/ChildProcess.h"
#include "Desktop/Support/XObserver.h"
#include "Intake/CorvanePaths.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

enum class Compositor : std::uint8_t { none, picom };

/// A user's desktop for one test: an X server, a window manager, a message bus and a home of its own, in
/// which the real application runs and the real hook is called. At the end all of it is gone; a process that
/// is left fails the test. When the test failed, a picture of the screen is kept in the build folder.
///
/// Waits for what it starts and throws std::runtime_error when that does not come up.
class DesktopSession {
  public:
    /// `windowManager` is the program's name: openbox, xfwm4, mutter, kwin_x11 or metacity. Mutter blends
    /// windows by itself.
    explicit DesktopSession(const std::string& windowManager = "openbox",
                            Compositor compositor = Compositor::picom);
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;
    ~DesktopSession();

    [[nodiscard]] XObserver& screen() { return *screen_; }
    [[nodiscard]] const std::filesystem::path& home() const { return home_; }
    [[nodiscard]] CorvanePaths paths() const { return CorvanePaths::standard(home_); }

    /// Starts the application, and waits until it has taken the first event away from the inbox.
    void startApplication();
    [[nodiscard]] ChildProcess& application() { return *application_; }
    /// What it has printed so far.
    [[nodiscard]] std::string applicationOutput() const;

    /// Runs the hook as Claude Code does, with the recorded payload "claude-<name>.json" told of another
    /// session and of the project folder of this name in the home.
    void claude(std::string_view payload, std::string_view session, std::string_view project);
    /// The same as Codex does, with "codex-agent-turn-complete-<name>.json".
    void codex(std::string_view payload, std::string_view project);
    /// The event files that wait in the inbox.
    [[nodiscard]] std::vector<std::filesystem::path> inbox() const;

    /// Opens a terminal, by default over the whole screen, that notes the keys which reach it, and waits
    /// until it has the focus. Returns its window.
    std::uint32_t startTerminal(bool fullScreen = true);
    /// The keys that reached the terminal.
    [[nodiscard]] std::string typed() const;

    /// Types on the keyboard; returns at once.
    std::unique_ptr<ChildProcess> type(const std::string& letters, std::chrono::milliseconds between);
    /// Clicks in the middle of `area`.
    void click(Rect area);

    /// Whether the screen shows exactly so many banners, at their places and in full, within `timeout`.
    testing::AssertionResult shows(std::size_t waiting, std::size_t done,
                                   std::chrono::milliseconds timeout = std::chrono::seconds(2));
    /// Whether no window of the application comes for as long as `duration`.
    testing::AssertionResult staysEmpty(std::chrono::milliseconds duration);

    /// Runs a program in this session, with further "NAME=value", which win.
    std::unique_ptr<ChildProcess> run(std::vector<std::string> arguments, const std::string& log,
                                      const std::vector<std::string>& variables = {});

  private:
    [[nodiscard]] Command command(std::vector<std::string> arguments, const std::string& log,
                                  const std::vector<std::string>& variables) const;
    ChildProcess& start(std::vector<std::string> arguments, const std::string& log,
                        const std::vector<std::string>& variables = {});
    void startBus();
    void startServer();
    void startWindowManager(const std::string& name, Compositor compositor);
    void runHook(const std::vector<std::string>& arguments, const std::string& input,
                 std::string_view project);
    [[nodiscard]] std::vector<pid_t> leftOver() const;

    ScratchFolder scratch_{"desktop"};
    std::filesystem::path home_;
    std::string display_;
    std::list<ChildProcess> processes_; // in the order of their start
    std::unique_ptr<XObserver> screen_;
    std::unique_ptr<ChildProcess> application_;
};

} // namespace corvane::test
