#pragma once

#include "Desktop/Support/ChildProcess.h"
#include "Desktop/Support/XObserver.h"
#include "Support/CorvanePaths.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// What blends the windows, if anything: picom, or the window manager itself.
enum class Compositor : std::uint8_t { none, picom, windowManager };

/// A user's desktop for one test: its own X server, window manager, session bus and home, in which the real
/// application runs and the real hook is called. At the end everything is removed; a process left behind
/// fails the test. If the test failed, a screenshot is kept in the build folder.
///
/// Waits for everything that it starts and throws std::runtime_error if it does not come up.
class DesktopSession {
  public:
    /// The default time limit for what must merely happen.
    static constexpr std::chrono::seconds patience{10};

    /// `windowManager` is the program's name: openbox, xfwm4, mutter, kwin_x11, metacity or twm. Mutter
    /// blends windows in any case; openbox and twm cannot. With sway or kwin_wayland, the session is a
    /// Wayland session: the screen is that of XWayland, which has windows but no picture. Under sway, each
    /// output has a bar at the top.
    explicit DesktopSession(const std::string& windowManager = "openbox",
                            Compositor compositor = Compositor::picom);
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;
    ~DesktopSession();

    [[nodiscard]] XObserver& screen() { return *screen_; }
    /// As in DISPLAY.
    [[nodiscard]] const std::string& display() const { return display_; }
    [[nodiscard]] const std::filesystem::path& home() const { return home_; }
    [[nodiscard]] CorvanePaths paths() const { return CorvanePaths::standard(home_); }

    /// What the application depends on, to be hung or killed.
    enum class Server : std::uint8_t { bus, x, windowManager };
    [[nodiscard]] ChildProcess& server(Server server) {
        return *servers_.at(static_cast<std::size_t>(server));
    }
    [[nodiscard]] ChildProcess& compositor() { return *compositor_; }
    /// Starts the session bus again, at the same address.
    void restartBus();

    /// The processes that determine what the screen shows: the servers, the compositing manager and the
    /// application.
    [[nodiscard]] std::vector<pid_t> painters() const;

    /// How many processes of this name run in this session.
    [[nodiscard]] std::size_t running(std::string_view name) const;

    /// Splits the screen between monitors, the first of them being the primary one.
    void setMonitors(const std::vector<Rect>& monitors);

    /// Keeps the session bus from replying, until the result is destroyed.
    [[nodiscard]] std::shared_ptr<void> holdBus();

    /// Starts a compositing manager, or stops the one that was started.
    void startCompositor();
    void stopCompositor();

    /// Starts the application, with further "NAME=value", and waits until it has read the first event from
    /// the inbox. A user who starts it by hand on a desktop without a tray gets a window.
    enum class Start : std::uint8_t { atLogin, byHand };
    void startApplication(std::vector<std::string> variables = {}, Start start = Start::atLogin);
    [[nodiscard]] ChildProcess& application() { return *application_; }
    /// What it has printed so far.
    [[nodiscard]] std::string applicationOutput() const;
    /// What the window manager has printed so far.
    [[nodiscard]] std::string windowManagerOutput() const;

    /// Runs the hook as Claude Code does, with the recorded payload "claude-<name>.json" changed to this
    /// session and to the project folder of this name in the home. `variables` are added to the hook's
    /// environment.
    void claude(std::string_view payload, std::string_view session, std::string_view project,
                const std::vector<std::string>& variables = {});
    /// The same as Codex does, with "codex-agent-turn-complete-<name>.json".
    void codex(std::string_view payload, std::string_view project,
               const std::vector<std::string>& variables = {});
    /// The event files in the inbox.
    [[nodiscard]] std::vector<std::filesystem::path> inbox() const;

    /// Runs the desktop's settings manager with these lines, as "Net/ThemeName \"Adwaita\"", or reloads the
    /// running one, and waits until it has published them.
    void setSettings(const std::string& lines);

    /// Opens a terminal that records the keys it receives, by default over the whole screen, else with
    /// xterm's `geometry`, and waits until it has the focus. Returns its window.
    std::uint32_t startTerminal(bool fullScreen = true, const std::string& geometry = {});
    /// The keys that the terminal has received.
    [[nodiscard]] std::string typed() const;

    /// Types on the keyboard; returns at once.
    std::unique_ptr<ChildProcess> type(const std::string& letters, std::chrono::milliseconds between);
    /// Moves the pointer to the middle of `area`.
    void point(Rect area);
    /// Moves the pointer to the lower left corner: a control that appears under it takes no clicks at first.
    void pointAway();
    /// Clicks in the middle of `area`.
    void click(Rect area);

    /// Whether the screen shows exactly this many banners, at their places and in full, within `timeout`.
    testing::AssertionResult shows(std::size_t waiting, std::size_t done,
                                   std::chrono::milliseconds timeout = patience);
    /// Whether the banners take their places in `area`, a monitor's work area.
    testing::AssertionResult standIn(Rect area);
    /// Whether no window of the application appears during `duration`.
    testing::AssertionResult staysEmpty(std::chrono::milliseconds duration);

    /// Runs a program in this session, with further "NAME=value", which take precedence.
    std::unique_ptr<ChildProcess> run(std::vector<std::string> arguments, const std::string& log,
                                      const std::vector<std::string>& variables = {});

  private:
    [[nodiscard]] Command command(std::vector<std::string> arguments, const std::string& log,
                                  const std::vector<std::string>& variables) const;
    ChildProcess& start(std::vector<std::string> arguments, const std::string& log,
                        const std::vector<std::string>& variables = {});
    void startBus();
    void startServer();
    /// The display's number; empty if the server has not come up.
    [[nodiscard]] std::string startServerOnce();
    [[nodiscard]] bool blends();
    void startSway();
    void startWaylandKWin();
    void enterWayland();
    void stopSway();
    void startWindowManager(const std::string& name, Compositor compositor);
    void stopApplication();
    void reportLogs() const;
    void runHook(const std::vector<std::string>& arguments, const std::string& input,
                 std::string_view project, const std::vector<std::string>& variables);
    [[nodiscard]] std::vector<pid_t> leftOver() const;

    ScratchFolder scratch_{"desktop"};
    std::filesystem::path home_;
    std::string display_;
    std::vector<std::string> variables_;     // of the session
    std::list<ChildProcess> processes_;      // in the order in which they were started
    std::array<ChildProcess*, 3> servers_{}; // of these, by `Server`
    std::unique_ptr<XObserver> screen_;
    std::unique_ptr<ChildProcess> compositor_;
    std::unique_ptr<ChildProcess> settings_;
    std::unique_ptr<ChildProcess> application_;
};

/// Whether sway can be started: not by root, unless as another user in a namespace of its own.
[[nodiscard]] bool canStartSway();

/// The window managers to test under: openbox and xfwm4, and those that the environment variable
/// CORVANE_TEST_WINDOW_MANAGERS names, separated by spaces.
[[nodiscard]] std::vector<std::string> windowManagers();
/// The same without Metacity, which leaves the focus where it is when a program opens a window by itself.
[[nodiscard]] std::vector<std::string> focusingWindowManagers();

} // namespace corvane::test
