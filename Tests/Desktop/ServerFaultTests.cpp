// The servers that the application depends on hang, die and come back: it never waits for them, and uses what
// comes back.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Heartbeat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
using Server = DesktopSession::Server;

class ServerFault : public testing::Test {
  protected:
    void alert(const std::string& session) {
        desktop.claude("Notification-permission_prompt", session, "shop");
    }
    void answer(const std::string& session) { desktop.claude("PostToolUse-Bash", session, "shop"); }

    /// Stops a client of the X server at a moment at which it has not grabbed the server: else no other
    /// client is served, the tests' own included.
    void hang(ChildProcess& client) {
        for (int attempt = 0; attempt < 10; ++attempt) {
            client.signal(SIGSTOP);
            const auto probe = desktop.run({"xrandr", "--listmonitors"}, "probe");
            if (probe->wait(2s)) return;
            client.signal(SIGCONT);
            probe->wait(10s);
            heartbeat.forgetSleep(); // the application has waited for the server as well
        }
        FAIL() << "the X server is grabbed at every attempt";
    }

    [[nodiscard]] bool isDrained() {
        return waitUntil(10s, [this] { return desktop.inbox().empty(); });
    }

    DesktopSession desktop;
    Heartbeat heartbeat{desktop};
};

TEST_F(ServerFault, theHeartbeatMissesWhileTheXServerHangsAndABannerIsToBeShown) {
    ASSERT_TRUE(heartbeat.startApplication());
    desktop.server(Server::x).signal(SIGSTOP);
    alert("a");
    // Nothing can be shown without the server, and every toolkit waits for it.
    int looks = 0;
    EXPECT_TRUE(waitUntil(10s, [&] {
        looks = heartbeat.isInLoop() ? 0 : looks + 1;
        return looks == 30;
    }));
    desktop.server(Server::x).signal(SIGCONT);
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_GT(heartbeat.longestSleep(), 100ms);
}

TEST_F(ServerFault, aHangingXServerDoesNotBlockWhileNothingIsToBeShown) {
    ASSERT_TRUE(heartbeat.startApplication());
    desktop.server(Server::x).signal(SIGSTOP);
    writeFile(desktop.paths().events() / "1.event", "");
    EXPECT_TRUE(isDrained());
    EXPECT_TRUE(heartbeat.isResponsive());
    desktop.server(Server::x).signal(SIGCONT);
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_F(ServerFault, losingTheXServerIsACleanExit) {
    ASSERT_TRUE(heartbeat.startApplication());
    alert("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    // Killed, the server would leave its socket behind.
    desktop.server(Server::x).signal(SIGTERM);
    const std::optional<int> status = desktop.application().wait(10s);
    ASSERT_TRUE(status.has_value());
    EXPECT_LT(*status, 128) << "killed by signal " << *status - 128;
}

TEST_F(ServerFault, aHangingSessionBusDoesNotBlock) {
    ASSERT_TRUE(heartbeat.startApplication());
    desktop.server(Server::bus).signal(SIGSTOP);
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
    answer("a");
    EXPECT_TRUE(desktop.shows(0, 0));
    EXPECT_TRUE(heartbeat.isResponsive());
    desktop.server(Server::bus).signal(SIGCONT);
    // A second start finds the first by the bus.
    const auto second = desktop.run({CORVANE_PROGRAM}, "second");
    EXPECT_EQ(second->wait(10s), 0);
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().managedWindows("corvane").size() == 1; }));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

TEST_F(ServerFault, bannersAreShownThoughTheSessionBusHangsAtTheStart) {
    desktop.server(Server::bus).signal(SIGSTOP);
    ASSERT_TRUE(heartbeat.startApplication());
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    desktop.server(Server::bus).signal(SIGCONT);
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

TEST_F(ServerFault, bannersAreShownThoughTheSessionBusHasDied) {
    ASSERT_TRUE(heartbeat.startApplication());
    desktop.server(Server::bus).signal(SIGKILL);
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
    desktop.restartBus();
    alert("b");
    EXPECT_TRUE(desktop.shows(2, 0));
    EXPECT_TRUE(heartbeat.isResponsive());
    EXPECT_TRUE(desktop.application().isRunning());
}

TEST_F(ServerFault, aHangingOrDeadWindowManagerDoesNotBlock) {
    ASSERT_TRUE(heartbeat.startApplication());
    ASSERT_NO_FATAL_FAILURE(hang(desktop.server(Server::windowManager)));
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
    desktop.server(Server::windowManager).signal(SIGCONT);
    desktop.server(Server::windowManager).signal(SIGKILL);
    alert("b");
    EXPECT_TRUE(desktop.shows(2, 0));
    EXPECT_TRUE(heartbeat.isResponsive());
    const auto another = desktop.run({"openbox", "--sm-disable"}, "openbox");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().windowManagerResponds(1s); }));
    const std::uint32_t terminal = desktop.startTerminal();
    EXPECT_TRUE(waitUntil(10s, [&] {
        const std::vector<Banner> banners = desktop.screen().banners();
        return banners.size() == 2 && std::ranges::all_of(banners, [&](const Banner& banner) {
                   return desktop.screen().isAbove(banner.window, terminal);
               });
    }));
}

TEST_F(ServerFault, aHangingCompositorDoesNotBlock) {
    ASSERT_TRUE(heartbeat.startApplication());
    ASSERT_NO_FATAL_FAILURE(hang(desktop.compositor()));
    alert("a");
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().banners().size() == 1; }));
    answer("a");
    EXPECT_TRUE(heartbeat.isResponsive());
    desktop.compositor().signal(SIGCONT);
    EXPECT_TRUE(desktop.shows(0, 0));
    alert("b");
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_F(ServerFault, aHangingOrDeadTrayDoesNotBlockAndAnotherIsUsed) {
    const auto tray = [this] { return desktop.run({"trayer", "--edge", "bottom"}, "trayer"); };
    auto first = tray();
    ASSERT_TRUE(heartbeat.startApplication());
    // The tray's row of icons is as wide as the icons in it.
    ASSERT_TRUE(waitUntil(10s, [&] { return !desktop.screen().managedWindows("trayer").empty(); }));
    ASSERT_NO_FATAL_FAILURE(hang(*first));
    alert("a"); // changes the icon
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(heartbeat.isResponsive());
    first->signal(SIGKILL);
    first->wait(10s);
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    const auto second = tray();
    EXPECT_TRUE(waitUntil(10s, [&] { return !desktop.screen().managedWindows("trayer").empty(); }));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

TEST_F(ServerFault, aHangingPortalDoesNotBlock) {
    const auto portal = desktop.run({CORVANE_PORTAL}, "portal");
    ASSERT_TRUE(waitUntil(10s, [&] {
        return fileBytes(desktop.home().parent_path() / "portal.log").value_or("").find("ready") !=
               std::string::npos;
    }));
    portal->signal(SIGSTOP);
    ASSERT_TRUE(heartbeat.startApplication());
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    portal->signal(SIGCONT);
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

TEST_F(ServerFault, aScreenTurnedOffAndOnAgainStillShowsTheBanners) {
    ASSERT_TRUE(heartbeat.startApplication());
    alert("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    // Fails in the end, since the server's screen cannot have no size; by then the monitor is off.
    EXPECT_NE(desktop.run({"xrandr", "--output", "screen", "--off"}, "xrandr")->wait(10s), std::nullopt);
    alert("b");
    EXPECT_TRUE(isDrained());
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    EXPECT_EQ(desktop.run({"xrandr", "--output", "screen", "--auto"}, "xrandr")->wait(10s), 0);
    EXPECT_TRUE(desktop.shows(2, 0));
}

TEST_F(ServerFault, bannersFollowAScreenThatChangesItsSize) {
    ASSERT_TRUE(heartbeat.startApplication());
    alert("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    const std::vector<std::vector<std::string>> changes{
        {"--newmode", "small", "63.5", "1024", "1072", "1176", "1328", "768", "771", "775", "798"},
        {"--addmode", "screen", "small"},
        {"--output", "screen", "--mode", "small"}};
    for (std::vector<std::string> arguments : changes) {
        arguments.insert(arguments.begin(), "xrandr");
        EXPECT_EQ(desktop.run(arguments, "xrandr")->wait(10s), 0);
    }
    EXPECT_TRUE(desktop.standIn({0, 0, 1024, 768}));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

} // namespace

} // namespace corvane::test
