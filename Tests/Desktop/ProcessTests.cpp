// The application as a process: how it starts, what it leaves on the disk, how it ends.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Starvation.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

TEST(Process, exitsWithStatusZeroOnTerminationAndInterrupt) {
    DesktopSession desktop;
    for (const int signal : {SIGTERM, SIGINT}) {
        desktop.startApplication();
        desktop.claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(desktop.shows(1, 0));
        desktop.application().signal(signal);
        EXPECT_EQ(desktop.application().wait(10s), 0) << "signal " << signal;
        // The server may notice the end a little later.
        EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().windowCount() == 0; }));
        EXPECT_EQ(desktop.applicationOutput(), "");
    }
}

/// Whether the process ends within `limit` after this signal, not counting the time in which it waits for a
/// processor.
bool endsWithin(std::chrono::milliseconds limit, DesktopSession& desktop, ChildProcess& process, int signal) {
    std::vector<pid_t> involved = desktop.painters();
    involved.push_back(process.id());
    const Starvation starvation(involved);
    process.signal(signal);
    return holdsWithin(limit, starvation, [&process] { return !process.isRunning(); });
}

// The time that desktops grant a program at the end of a session.
constexpr auto longestEnd = 300ms;

TEST(Process, endsAtOnceWhileABannerIsShown) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    EXPECT_TRUE(endsWithin(longestEnd, desktop, desktop.application(), SIGTERM));
}

TEST(Process, endsAtOnceWhileTheSoundServerAndTheBusHang) {
    DesktopSession desktop;
    // Accepts connections and replies to none.
    const auto server = desktop.run({"/usr/bin/python3", "-c",
                                     "import os, socket\n"
                                     "folder = os.environ['XDG_RUNTIME_DIR'] + '/pulse'\n"
                                     "os.makedirs(folder)\n"
                                     "server = socket.socket(socket.AF_UNIX)\n"
                                     "server.bind(folder + '/native')\n"
                                     "server.listen()\n"
                                     "home = os.environ['HOME']\n"
                                     "open(home + '/listening', 'w').close()\n"
                                     "asked = []\n"
                                     "while True:\n"
                                     "    asked.append(server.accept())\n"
                                     "    open(home + '/asked', 'w').close()\n"},
                                    "server");
    ASSERT_TRUE(waitUntil(10s, [&] { return fs::exists(desktop.home() / "listening"); }));
    desktop.startApplication({"CANBERRA_DRIVER=pulse"});
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    ASSERT_TRUE(waitUntil(10s, [&] { return fs::exists(desktop.home() / "asked"); }));
    const auto bus = desktop.holdBus();
    EXPECT_TRUE(endsWithin(longestEnd, desktop, desktop.application(), SIGTERM));
}

TEST(Process, secondStartEndsAtOnceWhileTheFirstHangs) {
    DesktopSession desktop;
    desktop.startApplication();
    desktop.application().signal(SIGSTOP);
    const auto second = desktop.run({CORVANE_PROGRAM}, "second");
    // It waits for a reply, for five seconds at most.
    EXPECT_FALSE(second->wait(1500ms).has_value());
    EXPECT_TRUE(endsWithin(longestEnd, desktop, *second, SIGTERM));
    desktop.application().signal(SIGCONT);
}

TEST(Process, supportDirectoryBecomesPrivateAtTheStart) {
    DesktopSession desktop;
    fs::permissions(desktop.paths().support, static_cast<fs::perms>(0755));
    desktop.startApplication();
    EXPECT_EQ(fs::status(desktop.paths().support).permissions(), fs::perms::owner_all);
}

TEST(Process, missingSupportDirectoryIsCreatedPrivate) {
    DesktopSession desktop;
    fs::remove_all(desktop.paths().support);
    const auto application = desktop.run({CORVANE_PROGRAM}, "other");
    const auto isPrivate = [&] {
        std::error_code ignored;
        return fs::status(desktop.paths().support, ignored).permissions() == fs::perms::owner_all;
    };
    EXPECT_TRUE(waitUntil(10s, isPrivate));
}

TEST(Process, withoutADisplayItSaysWhatIsMissingAndFails) {
    DesktopSession desktop;
    fs::remove_all(desktop.home() / ".config/Corvane");
    const auto application =
        desktop.run({"/bin/sh", "-c", "\"$0\" 2>\"$HOME/said\"", CORVANE_PROGRAM}, "other", {"DISPLAY="});
    EXPECT_EQ(application->wait(10s), 1);
    EXPECT_EQ(fileBytes(desktop.home() / "said"),
              "corvane: no display to show banners on (neither DISPLAY nor WAYLAND_DISPLAY is set)\n");
    EXPECT_FALSE(fs::exists(desktop.home() / ".config/Corvane"));
}

TEST(Process, printsItsVersionAndItsOptionsWithoutADisplayAndStartsNothing) {
    DesktopSession desktop;
    fs::remove_all(desktop.paths().support);
    const auto said = [&desktop](const char* option) {
        const auto application = desktop.run(
            {"/bin/sh", "-c", std::string("\"$0\" ") + option + " >\"$HOME/said\" 2>&1", CORVANE_PROGRAM},
            "other", {"DISPLAY="});
        EXPECT_EQ(application->wait(10s), 0);
        return fileBytes(desktop.home() / "said").value_or("");
    };
    EXPECT_TRUE(said("--version").starts_with("corvane "));
    EXPECT_TRUE(said("--help").starts_with("Usage: corvane "));
    EXPECT_FALSE(fs::exists(desktop.paths().support));
}

TEST(Process, withADisplayThatDoesNotRespondItFailsAndNamesIt) {
    DesktopSession desktop;
    const auto application = desktop.run({"/bin/sh", "-c", "\"$0\" 2>\"$HOME/said\"", CORVANE_PROGRAM},
                                         "other", {"DISPLAY=:9999"});
    const std::optional<int> status = application->wait(10s);
    ASSERT_TRUE(status.has_value());
    EXPECT_NE(*status, 0);
    EXPECT_NE(fileBytes(desktop.home() / "said").value_or("").find(":9999"), std::string::npos);
}

TEST(Process, withOnlyAnXServerAndAWindowManagerAnAlertWithSoundIsShownAndNothingPrinted) {
    DesktopSession desktop("openbox", Compositor::none);
    // Without a session bus, a runtime folder, a tray, a sound server and a sound device.
    writeFile(desktop.home() / "asound.conf", "");
    std::vector<std::string> command{"env"};
    for (const char* const name : {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME",
                                   "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "LANG"})
        command.insert(command.end(), {"-u", name});
    command.insert(command.end(), {"sh", "-c", "exec \"$0\" >\"$HOME/said\" 2>&1", CORVANE_PROGRAM});
    const std::string configuration = "ALSA_CONFIG_PATH=" + (desktop.home() / "asound.conf").string();
    const auto application = desktop.run(command, "other", {"CANBERRA_DRIVER=alsa", configuration});
    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(desktop.shows(1, 0, 10s));
    const auto hasTriedToPlay = [&] {
        const std::string maps = "/proc/" + std::to_string(application->id()) + "/maps";
        return fileBytes(maps).value_or("").find("libasound.so") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(10s, hasTriedToPlay));
    EXPECT_FALSE(waitUntil(500ms, [&] { return fileBytes(desktop.home() / "said") != ""; }));
    application->signal(SIGTERM);
    EXPECT_EQ(application->wait(10s), 0);
    EXPECT_EQ(fileBytes(desktop.home() / "said"), "");
}

TEST(Process, itsWindowsCarryTheIconAndTheClassThatTheDesktopEntryNames) {
    DesktopSession desktop;
    fs::remove_all(desktop.home() / ".config/Corvane");
    const auto application = desktop.run({CORVANE_PROGRAM}, "other");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().managedWindows("corvane").size() == 1; }));
    const std::uint32_t window = desktop.screen().managedWindows("corvane").front();
    EXPECT_EQ(desktop.screen().iconSides(window), (std::vector<std::uint32_t>{16, 22, 24, 32, 48, 64, 128}));
    EXPECT_EQ(desktop.screen().windowClass(window), "Corvane");
}

TEST(Process, insideAWaylandSessionItsWindowsAreOnTheXServerThere) {
    DesktopSession desktop;
    fs::remove_all(desktop.home() / ".config/Corvane");
    const auto application = desktop.run({CORVANE_PROGRAM}, "other", {"WAYLAND_DISPLAY=wayland-none"});
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().managedWindows("corvane").size() == 1; }));
}

TEST(Process, aWindowSystemThatTheUserHasChosenIsUsed) {
    DesktopSession desktop;
    fs::remove_all(desktop.home() / ".config/Corvane");
    const auto application = desktop.run({CORVANE_PROGRAM}, "other", {"QT_QPA_PLATFORM=offscreen"});
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    EXPECT_TRUE(desktop.staysEmpty(500ms));
    EXPECT_TRUE(desktop.screen().managedWindows("corvane").empty());
}

TEST(Process, childProcessesHaveTheSessionsBusAddressThoughTheBusIsMissingOrHangs) {
    DesktopSession desktop("openbox", Compositor::none);
    // An agent in tmux, whose jump runs tmux.
    const fs::path agent = desktop.home() / "bin/claude";
    const fs::path tmux = desktop.home() / "tools/tmux";
    const fs::path said = desktop.home() / "said";
    fs::create_directories(agent.parent_path());
    fs::create_directories(desktop.home() / "shop");
    fs::copy_file("/bin/sleep", agent);
    writeFile(tmux, "#!/bin/sh\nprintf '[%s]' \"${DBUS_SESSION_BUS_ADDRESS-none}\" >\"$HOME/said\"\n");
    fs::permissions(tmux, fs::perms::owner_all);
    const auto running =
        desktop.run({"sh", "-c", "cd shop && exec ../bin/claude 600"}, "agent", {"TMUX=/nowhere,1,0"});
    const char* const inherited = std::getenv("PATH");
    const std::string path =
        "PATH=" + tmux.parent_path().string() + ":" + (inherited == nullptr ? "" : inherited);
    const auto goToTerminal = [&] {
        fs::remove(said);
        desktop.pointAway();
        desktop.claude("Notification-permission_prompt", "a", "shop", {"TERM_PROGRAM="});
        ASSERT_TRUE(desktop.shows(1, 0));
        desktop.click(primaryButton(desktop.screen().banners().front()));
        ASSERT_TRUE(waitUntil(10s, [&] { return fs::exists(said) && !fs::is_empty(said); }));
    };

    desktop.startApplication(
        {path, "DBUS_SESSION_BUS_ADDRESS=", "XDG_RUNTIME_DIR=" + agent.parent_path().string()});
    ASSERT_NO_FATAL_FAILURE(goToTerminal());
    EXPECT_EQ(fileBytes(said), "[]");
    desktop.application().stop();
    const auto bus = desktop.holdBus();
    desktop.startApplication({path});
    ASSERT_NO_FATAL_FAILURE(goToTerminal());
    EXPECT_EQ(fileBytes(said), "[unix:path=" + (desktop.home().parent_path() / "run/bus").string() + "]");
}

TEST(Process, idlesWithoutUsingTheProcessor) {
    DesktopSession desktop;
    desktop.startApplication();
    // In clock ticks, fields 14 and 15 after the name in parentheses.
    const auto ticks = [&] {
        const std::string stat =
            fileBytes("/proc/" + std::to_string(desktop.application().id()) + "/stat").value_or("");
        std::istringstream fields(stat.substr(stat.rfind(')') + 2));
        std::string skipped;
        for (int i = 0; i < 11; ++i)
            fields >> skipped;
        long user = 0;
        long system = 0;
        fields >> user >> system;
        return user + system;
    };
    const long before = ticks();
    EXPECT_TRUE(desktop.staysEmpty(3s));
    EXPECT_LE(ticks() - before, 15) << "ticks of 10 ms in three seconds";
}

} // namespace

} // namespace corvane::test
