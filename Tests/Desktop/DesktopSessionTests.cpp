// Tests the fixtures that the desktop tests rely on.

#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <chrono>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

TEST(DesktopSession, hasAWindowManagerThatResponds) {
    DesktopSession desktop("openbox", Compositor::none);
    EXPECT_TRUE(desktop.screen().windowManagerResponds(2s));
}

TEST(DesktopSession, aWindowManagerThatIgnoresRequestsDoesNotRespond) {
    DesktopSession desktop("twm", Compositor::none);
    EXPECT_FALSE(desktop.screen().windowManagerResponds(200ms));
}

} // namespace
} // namespace corvane::test
