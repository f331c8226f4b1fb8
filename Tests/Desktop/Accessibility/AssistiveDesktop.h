#pragma once

#include "Desktop/Support/DesktopSession.h"

#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// A desktop with an accessibility bus and with assistive technology, each started on request.
///
/// Waits for everything that it starts and throws std::runtime_error if it does not come up.
class AssistiveDesktop {
  public:
    explicit AssistiveDesktop(const std::string& windowManager = "openbox")
        : session_(windowManager) {}

    [[nodiscard]] DesktopSession& session() { return session_; }

    /// Starts the accessibility bus, without requesting that accessibility be enabled.
    void startBus();
    /// Signals all processes of the accessibility bus: the launcher, the bus and, if it runs, the registry;
    /// or the one that runs this program.
    void signalBus(int number) const { bus_->signalGroup(number); }
    void signalBus(int number, const std::string& program) const;

    /// Starts a plain listener, and waits until it is ready.
    void startListener();
    /// Waits until the listener has found the application on the bus, which knows of the listener then.
    void waitForApplication();
    /// Starts the listener, and again once the application has joined the bus: Qt seems to miss a listener
    /// that registers while it joins.
    void startListenerToJoiningApplication();
    /// The events that the application has sent since, one per line, as Accessibility/assistive prints them.
    [[nodiscard]] std::vector<std::string> heard() const;
    /// The same without name changes.
    [[nodiscard]] std::vector<std::string> announcements() const;

    /// The elements of the visible banners: depth, role, name and actions, separated by tabs.
    [[nodiscard]] std::vector<std::string> tree();
    /// Presses a button of the banner of this project; returns whether that was possible.
    [[nodiscard]] bool pressButton(const std::string& button, const std::string& project);

    /// Starts a listener that follows the keyboard focus, and waits until the application, which must run,
    /// knows of it.
    void startFollower();
    /// Where the focus has moved since, and the check boxes that changed, one per line, as
    /// Accessibility/assistive prints them.
    [[nodiscard]] std::vector<std::string> followed() const;

    /// Presses a key, and waits until the follower has received `line`; returns whether it has.
    testing::AssertionResult press(const std::string& key, const std::string& line);
    /// Presses a key that causes no event.
    void press(const std::string& key);

    /// Waits until the application has this many managed windows, one of them with the keyboard focus;
    /// returns whether it does.
    testing::AssertionResult hasKeyboard(std::size_t windows);
    /// Starts the application again, which brings the main window of the first one to the front.
    testing::AssertionResult opensMainWindow();
    /// Opens the settings with the keyboard, from another window of the application.
    testing::AssertionResult opensSettings();

    /// Opens the main window's first menu with the keyboard.
    testing::AssertionResult opensMenu();

    /// Opens the panel from that menu, which gives it the keyboard focus.
    testing::AssertionResult opensPanel();

    /// The elements of the focused window, as Accessibility/assistive prints them.
    [[nodiscard]] std::vector<std::string> window();
    /// The geometry of the control of this name in that window.
    [[nodiscard]] Rect place(const std::string& name);

    /// Starts Orca, and waits until it is up.
    void startOrca();
    /// Waits until the application, which must run, knows of all listeners on the accessibility bus.
    void meetApplication();
    /// All that Orca has spoken since it came up.
    [[nodiscard]] std::vector<std::string> spoken() const;

  private:
    [[nodiscard]] std::vector<std::string> logLines(const std::string& name) const;
    [[nodiscard]] bool assist(std::vector<std::string> arguments, const std::string& log);

    DesktopSession session_;
    // Destroyed before the session checks for leftovers.
    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<ChildProcess> listener_;
    std::unique_ptr<ChildProcess> follower_;
    std::unique_ptr<ChildProcess> orca_;
};

} // namespace corvane::test
