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
    [[nodiscard]] bool press(const std::string& button, const std::string& project);

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
    std::unique_ptr<ChildProcess> orca_;
};

} // namespace corvane::test
