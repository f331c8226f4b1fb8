// Nothing of the application shows above a screen locker, not even for a frame.

#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <thread>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

constexpr Color lockColor{0x204060};

/// Whether the screen shows nothing but the locker in this area.
bool isLocked(const XObserver& screen, Rect area) {
    const Picture picture = screen.screen(area);
    for (int y = 0; y < area.height; ++y) {
        for (int x = 0; x < area.width; ++x) {
            if (picture.at(x, y) != lockColor) return false;
        }
    }
    return true;
}

/// Looks at an area of the screen without a pause, on its own thread and connection.
class LeakWatch {
  public:
    LeakWatch(const std::string& display, Rect area)
        : screen_(display)
        , area_(area)
        , thread_([this](const std::stop_token& stop) {
            for (; !stop.stop_requested(); ++looks_)
                leaks_ += isLocked(screen_, area_) ? 0 : 1;
        }) {}
    LeakWatch(const LeakWatch&) = delete;
    LeakWatch& operator=(const LeakWatch&) = delete;
    ~LeakWatch() = default;

    [[nodiscard]] int looks() const { return looks_; }
    [[nodiscard]] int leaks() const { return leaks_; }

  private:
    XObserver screen_;
    Rect area_;
    std::atomic<int> looks_ = 0;
    std::atomic<int> leaks_ = 0; // how often something else was seen
    std::jthread thread_;
};

class ScreenLock : public testing::TestWithParam<std::string> {
  protected:
    /// Part of where banners are, small enough to be looked at often.
    [[nodiscard]] Rect bannerRow() {
        const Rect area = desktop.screen().workArea();
        return {area.x + area.width / 2 - 200, area.y + 40, 400, 2};
    }

    void lock() {
        locker = desktop.run({"i3lock", "--nofork", "--color", "204060"}, "i3lock");
        ASSERT_TRUE(waitUntil(20s, [this] {
            return isLocked(desktop.screen(), bannerRow()) && desktop.screen().isKeyboardGrabbed();
        })) << "the locker did not start";
    }

    void alert(const std::string& session) {
        desktop.claude("Notification-permission_prompt", session, session);
    }

    DesktopSession desktop{GetParam(), Compositor::none};
    std::unique_ptr<ChildProcess> locker;
};

TEST_P(ScreenLock, nothingShowsAboveTheLocker) {
    desktop.pointAway();
    desktop.startApplication();
    alert("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    lock();
    // A locker raises itself again; one that cannot shows what would be seen until then.
    kill(-locker->id(), SIGSTOP);
    const LeakWatch watch(desktop.display(), bannerRow());
    alert("b");
    EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 2; }));
    // A window that opens: the active one changes.
    const auto terminal = desktop.run({"xterm", "-geometry", "20x5+100+500", "-e", "cat"}, "xterm");
    EXPECT_TRUE(waitUntil(10s, [this] { return !desktop.screen().managedWindows("xterm").empty(); }));
    desktop.codex("codex-tui", "c");
    EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 3; }));
    waitUntil(1500ms, [] { return false; });
    EXPECT_GT(watch.looks(), 100);
    EXPECT_EQ(watch.leaks(), 0) << "of " << watch.looks();
}

TEST_P(ScreenLock, theBannersAreShownOnceItIsUnlocked) {
    desktop.pointAway();
    desktop.startApplication();
    lock();
    alert("a");
    ASSERT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 1; }));
    locker.reset();
    EXPECT_TRUE(desktop.shows(1, 0));
}

TEST_P(ScreenLock, aFullScreenWindowWithoutTheKeyboardIsNoLocker) {
    desktop.pointAway();
    desktop.startApplication();
    desktop.screen().cover(desktop.screen().screenArea());
    alert("a");
    EXPECT_TRUE(desktop.shows(1, 0));
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, ScreenLock, testing::ValuesIn(windowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace

} // namespace corvane::test
