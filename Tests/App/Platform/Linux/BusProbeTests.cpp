#include "Platform/Linux/BusProbe.h"
#include "Support/FileDescriptor.h"
#include "Support/TestSupport.h"

#include <QByteArray>
#include <QtGlobal>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>
#include <vector>

namespace corvane {
namespace {

using namespace std::chrono_literals;

/// A server that accepts no connection until requested.
class BusProbe : public testing::Test {
  protected:
    void SetUp() override {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        const std::string path = scratch / "bus";
        ASSERT_LT(path.size(), sizeof name.sun_path);
        std::copy(path.begin(), path.end(), std::begin(name.sun_path));
        ASSERT_EQ(bind(server.number(), reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        ASSERT_EQ(listen(server.number(), 1), 0);
    }

    test::ScratchFolder scratch{"bus"};
    files::FileDescriptor server{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    const std::string address = "unix:path=" + (scratch / "bus").string() + ",guid=0123";
};

TEST_F(BusProbe, aServerThatDoesNotReplyHangs) {
    EXPECT_TRUE(busprobe::hangs(address, 0ms));
    EXPECT_TRUE(busprobe::hangs(address + ";unix:path=/elsewhere", 1ms));
}

TEST_F(BusProbe, aServerThatIsGoneDoesNotHang) {
    server = {};
    EXPECT_FALSE(busprobe::hangs(address, 0ms));
}

TEST_F(BusProbe, aPathThatIsNoSocketIsNotProbed) {
    for (const char* const other :
         {"", "unix:", "unix:path=", "tcp:host=localhost", "unix:path=/a%20b", "autolaunch:"})
        EXPECT_FALSE(busprobe::hangs(other, 0ms)) << other;
}

/// Sets environment variables, and restores their values at the end.
class Environment {
  public:
    explicit Environment(const std::vector<std::pair<const char*, QByteArray>>& variables) {
        for (const auto& [name, value] : variables) {
            before_.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name))
                                                                       : std::nullopt);
            qputenv(name, value);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        for (const auto& [name, value] : before_)
            value ? qputenv(name, *value) : qunsetenv(name);
    }

  private:
    std::vector<std::pair<const char*, std::optional<QByteArray>>> before_;
};

TEST(AccessibilityAddress, isTheSocketOfTheDisplayInTheRuntimeFolder) {
    const test::ScratchFolder runtime{"runtime"};
    const auto found = [&runtime](const char* display, const char* chosen = "") {
        const Environment environment({{"XDG_RUNTIME_DIR", runtime.path().c_str()},
                                       {"DISPLAY", display},
                                       {"AT_SPI_BUS_ADDRESS", chosen}});
        return busprobe::accessibilityAddress();
    };
    const std::string common = "unix:path=" + (runtime / "at-spi/bus").string();
    EXPECT_EQ(found(":12"), "");
    test::writeFile(runtime / "at-spi/bus_12", "");
    for (const char* const display : {":12", ":12.0", "host:12.1"})
        EXPECT_EQ(found(display), common + "_12") << display;
    for (const char* const other : {":1", ":120", "", ":"})
        EXPECT_EQ(found(other), "") << other;
    test::writeFile(runtime / "at-spi/bus", "");
    EXPECT_EQ(found(":12"), common + "_12");
    EXPECT_EQ(found(":1"), common);
    EXPECT_EQ(found(":12", "unix:path=/own"), "unix:path=/own");
}

} // namespace
} // namespace corvane
