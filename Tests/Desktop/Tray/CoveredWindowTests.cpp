// An open but covered window is raised when the user requests it, whatever the window manager.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Tray/NotifierHost.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

constexpr Color background{0xF5F5F7};

class CoveredWindow : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        host.start();
        desktop.startApplication();
        ASSERT_TRUE(eventually([this] { return host.items().size() == 1; }));
    }

    /// Twm does not report the active window.
    [[nodiscard]] static bool tellsActiveWindow() { return GetParam() != "twm"; }

    bool eventually(const std::function<bool()>& condition) {
        return waitUntil(20s, [&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    /// Whether the screen shows a window of the application, by its background colour.
    [[nodiscard]] bool isSeen() { return desktop.screen().screen().share(screenArea, background, 2) > 0.05; }
    [[nodiscard]] bool isActive() {
        const auto windows = desktop.screen().managedWindows("corvane");
        return std::ranges::find(windows, desktop.screen().activeWindow()) != windows.end();
    }

    [[nodiscard]] bool comesToTheFront() {
        return eventually([this] { return isSeen() && (!tellsActiveWindow() || isActive()); });
    }

    /// Covers the screen with a terminal that the user then types in.
    void cover() {
        constexpr const char* everything = "260x80+0+0";
        if (tellsActiveWindow()) {
            const std::uint32_t window = desktop.startTerminal(false, everything);
            EXPECT_EQ(desktop.type("abc", 20ms)->wait(10s), 0);
            ASSERT_TRUE(eventually([this] { return desktop.typed() == "abc"; }));
            desktop.screen().noteUse(window);
        } else {
            terminal = desktop.run({"xterm", "-geometry", everything, "-e", "cat"}, "xterm");
        }
        ASSERT_TRUE(eventually([this] { return !isSeen(); }));
    }

    DesktopSession desktop{GetParam(), Compositor::none};
    NotifierHost host{"unix:path=" + (desktop.home().parent_path() / "run/bus").string()};
    const Rect screenArea = desktop.screen().screenArea();
    std::unique_ptr<ChildProcess> terminal;
};

TEST_P(CoveredWindow, aSecondStartRaisesIt) {
    EXPECT_EQ(desktop.run({CORVANE_PROGRAM}, "second")->wait(10s), 0);
    ASSERT_TRUE(eventually([this] { return isSeen(); }));
    ASSERT_NO_FATAL_FAILURE(cover());
    EXPECT_EQ(desktop.run({CORVANE_PROGRAM}, "third")->wait(10s), 0);
    EXPECT_TRUE(comesToTheFront());
}

TEST_P(CoveredWindow, openingItFromTheMenuRaisesIt) {
    ASSERT_TRUE(host.choose("Open Corvane"));
    ASSERT_TRUE(eventually([this] { return isSeen(); }));
    ASSERT_NO_FATAL_FAILURE(cover());
    ASSERT_TRUE(host.choose("Open Corvane"));
    EXPECT_TRUE(comesToTheFront());
}

TEST_P(CoveredWindow, askingForTheSettingsRaisesThem) {
    ASSERT_TRUE(host.choose("Settings…"));
    ASSERT_TRUE(eventually([this] { return isSeen(); }));
    ASSERT_NO_FATAL_FAILURE(cover());
    ASSERT_TRUE(host.choose("Settings…"));
    EXPECT_TRUE(comesToTheFront());
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, CoveredWindow, testing::ValuesIn([] {
                             std::vector<std::string> names = windowManagers();
                             names.emplace_back("twm");
                             return names;
                         }()),
                         [](const auto& manager) { return manager.param; });

} // namespace
} // namespace corvane::test
