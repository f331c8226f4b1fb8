#include "Platform/Linux/BusProbe.h"
#include "Support/FileDescriptor.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace corvane {
namespace {

using namespace std::chrono_literals;

/// A server that accepts no connection until it is told to.
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

TEST_F(BusProbe, whatIsNoSocketIsNotExamined) {
    for (const char* const other :
         {"", "unix:", "unix:path=", "tcp:host=localhost", "unix:path=/a%20b", "autolaunch:"})
        EXPECT_FALSE(busprobe::hangs(other, 0ms)) << other;
}

} // namespace
} // namespace corvane
