// The application started by D-Bus activation, with the service file of an installation.

#include "Desktop/Support/DesktopSession.h"
#include "Support/MessageBus.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

namespace corvane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A desktop with a second bus, which knows the display and the application's service.
class ActivationTest : public testing::Test {
  protected:
    void SetUp() override {
        writeFile(service, "[D-BUS Service]\nName=org.corvane.Corvane\nExec=" CORVANE_PROGRAM "\n");
        writeFile(session.home() / "bus.conf", busConfiguration(socket, service.parent_path()));
        bus = session.run(
            {"dbus-daemon", "--nofork", "--config-file=" + (session.home() / "bus.conf").string()},
            "activating-bus", {address});
        ASSERT_TRUE(waitUntil(20s, [&] { return acceptsConnections(socket); }));
    }
    void TearDown() override {
        const std::string answer =
            call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                 "org.corvane.Corvane");
        const std::size_t number = answer.find("uint32 ");
        if (number == std::string::npos) return;
        const pid_t process = std::stoi(answer.substr(number + 7));
        EXPECT_EQ(kill(process, SIGTERM), 0);
        EXPECT_TRUE(waitUntil(10s, [&] { return kill(process, 0) != 0; }));
    }

    /// The method's reply, in the notation of gdbus.
    std::string call(const std::string& destination, const std::string& path, const std::string& method,
                     const std::string& argument) {
        const auto process = session.run({"sh", "-c",
                                          R"(exec gdbus call --session --dest "$0" --object-path "$1" )"
                                          R"(--method "$2" "$3" >"$HOME/answer" 2>&1)",
                                          destination, path, method, argument},
                                         "call", {address});
        process->wait(20s);
        return fileBytes(session.home() / "answer").value_or("");
    }
    std::string activate() {
        return call("org.corvane.Corvane", "/org/corvane/Corvane", "org.freedesktop.Application.Activate",
                    "{}");
    }
    bool takesFromInbox() {
        writeFile(session.paths().events() / "0.event", "");
        return waitUntil(20s, [&] { return session.inbox().empty(); });
    }
    std::size_t windows() { return session.screen().managedWindows("Corvane").size(); }

    DesktopSession session{"openbox", Compositor::none};
    const fs::path service = session.home() / "services/org.corvane.Corvane.service";
    const fs::path socket = session.home() / "activating-bus";
    const std::string address = "DBUS_SESSION_BUS_ADDRESS=unix:path=" + socket.string();
    std::unique_ptr<ChildProcess> bus;
};

TEST_F(ActivationTest, theRequestThatStartsTheApplicationIsAStartAndTheNextOpensItsWindow) {
    // After the first run a start opens no window. The reply is sent once the request has been handled.
    EXPECT_EQ(activate(), "()\n");
    ASSERT_TRUE(takesFromInbox());
    EXPECT_EQ(windows(), 0U);

    EXPECT_EQ(activate(), "()\n");
    EXPECT_TRUE(waitUntil(20s, [&] { return windows() == 1; }));
}

TEST_F(ActivationTest, aFirstRunStartedByTheBusShowsItsWindow) {
    fs::remove(session.home() / ".config/Corvane/Corvane.conf");
    EXPECT_EQ(activate(), "()\n");
    EXPECT_TRUE(waitUntil(20s, [&] { return windows() == 1; }));
}

} // namespace
} // namespace corvane::test
