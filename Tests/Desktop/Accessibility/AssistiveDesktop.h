#pragma once

#include "Desktop/Support/DesktopSession.h"

#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// A desktop with an accessibility bus and with assistive technology, each started when the test says so.
///
/// Waits for what it starts and throws std::runtime_error when that does not come up.
class AssistiveDesktop {
  public:
    explicit AssistiveDesktop(const std::string& windowManager = "openbox")
        : session_(windowManager) {}

    [[nodiscard]] DesktopSession& session() { return session_; }

    /// Starts the accessibility bus; nobody asks for accessibility to be enabled.
    void startBus();

    /// Starts a plain listener, and waits until it has found the application on the bus if that runs.
    void startListener();
    /// Waits until the listener has found the application.
    void waitForApplication();
    /// What the application has sent since, one event a line, as Accessibility/assistive prints it.
    [[nodiscard]] std::vector<std::string> heard() const;
    /// The same without changes of names.
    [[nodiscard]] std::vector<std::string> announcements() const;

    /// The elements of the banners that show: depth, role, name and actions, parted by tabs.
    [[nodiscard]] std::vector<std::string> tree();
    /// Presses a button of the banner of this project; whether that could be done.
    [[nodiscard]] bool pressButton(const std::string& button, const std::string& project);

    /// Starts a listener that follows the keyboard, and waits until it listens.
    void startFollower();
    /// Where the keyboard has gone since, and the check boxes that changed, one a line, as
    /// Accessibility/assistive prints it.
    [[nodiscard]] std::vector<std::string> followed() const;

    /// Presses a key, and waits until the follower was told `line`; whether it was.
    testing::AssertionResult press(const std::string& key, const std::string& line);
    /// Presses a key that tells nothing.
    void press(const std::string& key);

    /// Whether there come to be so many managed windows of the application, one of them with the keyboard.
    testing::AssertionResult hasKeyboard(std::size_t windows);
    /// Starts the application again, which brings the main window of the first one to the front.
    testing::AssertionResult opensMainWindow();

    /// Opens the main window's first menu by the keyboard.
    testing::AssertionResult opensMenu();

    /// The elements of the window that has the keyboard, as Accessibility/assistive prints them.
    [[nodiscard]] std::vector<std::string> window();
    /// Where the control of this name stands in that window.
    [[nodiscard]] Rect place(const std::string& name);

    /// Starts Orca, and waits until it is up.
    void startOrca();
    /// All that Orca has spoken since it came up.
    [[nodiscard]] std::vector<std::string> spoken() const;

  private:
    [[nodiscard]] std::vector<std::string> logLines(const std::string& name) const;
    [[nodiscard]] bool assist(std::vector<std::string> arguments, const std::string& log);

    DesktopSession session_;
    // They go before the session looks for what is left.
    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<ChildProcess> listener_;
    std::unique_ptr<ChildProcess> follower_;
    std::unique_ptr<ChildProcess> orca_;
};

} // namespace corvane::test
