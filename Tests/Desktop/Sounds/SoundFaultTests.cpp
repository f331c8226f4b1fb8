// The whole application with a sound server that hangs, dies and comes back: it shows banners all the same,
// and is heard again.

#include "Desktop/Sounds/SoundServer.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Heartbeat.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

class SoundFault : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(heartbeat.startApplication(place.variables())); }

    void startServer() {
        recording.reset();
        server.emplace(place);
        recording.emplace(place);
    }

    void alert(const std::string& session) {
        desktop.claude("Notification-permission_prompt", session, "shop");
    }

    /// Whether a sound is heard; waits until it is over.
    [[nodiscard]] bool hearsASound() {
        constexpr double part = 0.05; // seconds
        const bool isHeard = !recording->next(part, 15s).samples.empty();
        EXPECT_TRUE(waitUntil(15s, [this] { return recording->next(part, 500ms).samples.empty(); }));
        return isHeard;
    }

    ScratchFolder scratch;
    SoundPlace place{scratch};
    DesktopSession desktop;
    Heartbeat heartbeat{desktop};
    std::optional<SoundServer> server;
    std::optional<Recording> recording;
};

TEST_F(SoundFault, aServerThatStartsLateHangsAndDiesDoesNotBlockAndIsUsedAgain) {
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0, 5s));
    startServer();
    alert("b");
    EXPECT_TRUE(hearsASound());
    server->signal(SIGSTOP);
    alert("c");
    EXPECT_TRUE(desktop.shows(3, 0, 5s));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
    server->signal(SIGCONT);
    EXPECT_TRUE(hearsASound()) << "the sound that was pending";
    alert("a"); // once more
    EXPECT_TRUE(hearsASound());
    server->signal(SIGSTOP);
    alert("b");
    EXPECT_TRUE(waitUntil(5s, [this] { return desktop.inbox().empty(); }));
    server->signal(SIGKILL);
    startServer();
    alert("c");
    EXPECT_TRUE(hearsASound());
    EXPECT_TRUE(desktop.shows(3, 0, 5s));
    EXPECT_TRUE(heartbeat.isResponsive(1500ms));
}

} // namespace

} // namespace corvane::test
