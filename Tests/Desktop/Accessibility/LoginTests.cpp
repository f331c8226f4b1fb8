// The switch "Open Corvane at login" on a desktop, used with the mouse.

#include "Desktop/Accessibility/AssistiveDesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

namespace corvane::test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::chrono::seconds patience{10};
constexpr const char* label = "Open Corvane at login";

/// The value of a key in a desktop entry.
std::string value(const std::string& entry, const std::string& key) {
    const std::size_t start = entry.find("\n" + key + "=");
    if (start == std::string::npos) return {};
    const std::size_t from = start + key.size() + 2;
    return entry.substr(from, entry.find('\n', from) - from);
}

TEST(LoginSwitch, writesAnEntryThatStartsTheApplicationAndRemovesIt) {
    AssistiveDesktop desktop;
    DesktopSession& session = desktop.session();
    desktop.startBus();
    session.startApplication();
    desktop.startFollower();
    ASSERT_TRUE(desktop.opensMainWindow());
    ASSERT_TRUE(desktop.opensSettings());
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAgents\t"));
    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAlerts\t"));

    const fs::path file = session.home() / ".config/autostart/corvane.desktop";
    ASSERT_FALSE(fs::exists(file));
    session.click(desktop.place(label));
    ASSERT_TRUE(waitUntil(patience, [&] { return fs::exists(file); }));
    const std::string entry = fileBytes(file).value_or("");
    EXPECT_EQ(value(entry, "Type"), "Application");
    EXPECT_EQ(value(entry, "Name"), "Corvane");

    // Without special characters, an entry's command is valid in the shell too.
    session.application().signal(SIGTERM);
    ASSERT_EQ(session.application().wait(patience), 0);
    ASSERT_TRUE(waitUntil(patience, [&] { return session.screen().managedWindows("corvane").empty(); }));
    writeFile(session.paths().events() / "0.event", "");
    const auto login = session.run({"sh", "-c", "exec " + value(entry, "Exec")}, "login");
    EXPECT_TRUE(waitUntil(2 * patience, [&] { return session.inbox().empty(); })) << value(entry, "Exec");
    EXPECT_TRUE(session.screen().managedWindows("corvane").empty()) << "only the tray icon at login";

    // A switch that appears under the pointer takes no clicks at first.
    session.pointAway();
    ASSERT_TRUE(desktop.opensMainWindow());
    ASSERT_TRUE(desktop.opensSettings());
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAgents\t"));
    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAlerts\t"));
    EXPECT_TRUE(login->isRunning());
    session.click(desktop.place(label));
    EXPECT_TRUE(waitUntil(patience, [&] { return !fs::exists(file); }));
}

} // namespace

} // namespace corvane::test
