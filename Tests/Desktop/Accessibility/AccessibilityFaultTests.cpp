// The whole application with an accessibility bus that hangs, dies and comes back.

#include "Desktop/Accessibility/AssistiveDesktop.h"
#include "Desktop/Support/Heartbeat.h"
#include "Platform/Linux/AccessibilityProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds patience{10};

class AccessibilityFault : public testing::Test {
  protected:
    DesktopSession& session() { return desktop.session(); }

    void alert(const std::string& project) {
        session().claude("Notification-permission_prompt", project, project);
    }

    /// Whether assistive technology is notified of the project's alert.
    testing::AssertionResult announces(const std::string& project) {
        const std::string line = "showing\tnotification\tClaude is waiting for you, " + project +
                                 " · Claude needs your permission";
        if (waitUntil(patience, [&] { return std::ranges::count(desktop.announcements(), line) == 1; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << testing::PrintToString(desktop.announcements());
    }

    AssistiveDesktop desktop;
    Heartbeat heartbeat{session()};
};

TEST_F(AccessibilityFault, aBusThatStartsLateIsJoinedAndDoesNotBlockWhenItHangsOrDies) {
    ASSERT_TRUE(heartbeat.startApplication());
    desktop.startBus();
    desktop.startListenerToJoiningApplication();
    heartbeat.forgetSleep(); // Qt waits for the replies by which it joins
    alert("shop");
    EXPECT_TRUE(announces("shop"));
    desktop.signalBus(SIGSTOP);
    alert("blog");
    EXPECT_TRUE(session().shows(2, 0, 5s));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    desktop.signalBus(SIGCONT);
    EXPECT_TRUE(announces("blog"));
    alert("handbook");
    EXPECT_TRUE(announces("handbook"));
    desktop.signalBus(SIGKILL);
    // Qt joins no other bus in this run.
    session().codex("codex-tui", "notes");
    EXPECT_TRUE(session().shows(2, 1, 5s));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    EXPECT_TRUE(session().application().isRunning());
}

TEST_F(AccessibilityFault, aBusOrARegistryThatHangsAtTheStartIsNotJoined) {
    desktop.startBus();
    desktop.startListener(); // has the registry started
    const std::string address = "unix:path=" + (session().home().parent_path() / "run/at-spi/bus_").string() +
                                session().display().substr(1);
    EXPECT_FALSE(accessibilityHangs(address, patience));
    desktop.signalBus(SIGSTOP, "at-spi2-registryd");
    EXPECT_TRUE(accessibilityHangs(address, 200ms));
    desktop.signalBus(SIGCONT, "at-spi2-registryd");
    EXPECT_FALSE(accessibilityHangs(address, patience));
    desktop.signalBus(SIGSTOP, "dbus-daemon");
    EXPECT_TRUE(accessibilityHangs(address, 200ms));

    ASSERT_TRUE(heartbeat.startApplication());
    alert("shop");
    EXPECT_TRUE(session().shows(1, 0, 5s));
    desktop.signalBus(SIGCONT, "dbus-daemon");
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    EXPECT_EQ(session().applicationOutput(), "");
}

} // namespace

} // namespace corvane::test
