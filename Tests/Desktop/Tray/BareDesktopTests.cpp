// The tray panel closes at a press on the bare desktop, whatever the window manager, and only there.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Tray/NotifierHost.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

class BareDesktop : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        host.start();
        desktop.startApplication();
        ASSERT_TRUE(eventually([this] { return host.items().size() == 1; }));
        terminal = desktop.startTerminal(false, "80x20+100+300");
        host.activate(1200, 10);
        ASSERT_TRUE(eventually([this] {
            panel = desktop.screen().activeWindow();
            return panel != terminal && owns(panel);
        })) << "the panel opens, with the focus";
    }

    static bool eventually(const std::function<bool()>& condition) {
        return waitUntil(20s, [&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    [[nodiscard]] bool owns(std::uint32_t window) {
        return std::ranges::count(desktop.screen().managedWindows("corvane"), window) == 1;
    }

    DesktopSession desktop{GetParam()};
    NotifierHost host{"unix:path=" + (desktop.home().parent_path() / "run/bus").string()};
    std::uint32_t terminal = 0;
    std::uint32_t panel = 0;
};

TEST_P(BareDesktop, aPressOnItClosesThePanel) {
    desktop.click({40, 200, 2, 2});
    EXPECT_TRUE(eventually([this] { return desktop.screen().managedWindows("corvane").empty(); }));
}

TEST_P(BareDesktop, aPressInThePanelDoesNot) {
    const Rect area = desktop.screen().geometry(panel);
    desktop.click({area.x + area.width / 2, area.y + area.height / 2, 2, 2});
    EXPECT_FALSE(waitUntil(500ms, [this] { return !owns(panel); }));
}

TEST_P(BareDesktop, aTurnOfTheWheelDoesNot) {
    EXPECT_EQ(desktop.run({"xdotool", "mousemove", "40", "200", "click", "5"}, "xdotool")->wait(10s), 0);
    EXPECT_FALSE(waitUntil(500ms, [this] { return !owns(panel); }));
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, BareDesktop, testing::ValuesIn(windowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace
} // namespace corvane::test
