// What the application takes for free of panels, in this process on a display of its own.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/SidePanel.h"
#include "Platform/Linux/Screens.h"

#include <QGuiApplication>
#include <QRect>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

TEST(WorkArea, isWhatTheWindowManagerReportsEvenIfQtHasMissedAChange) {
    DesktopSession desktop{"openbox", Compositor::none};
    qputenv("DISPLAY", QByteArray::fromStdString(desktop.display()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(count, arguments);
    const LinuxScreens screens;
    const Rect whole = desktop.screen().screenArea();
    EXPECT_EQ(screens.mainVisibleFrame(), QRect(whole.x, whole.y, whole.width, whole.height));

    constexpr int height = 40;
    const SidePanel panel(desktop.display(), {0, 0, whole.width, height});
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().workArea().y == height; }));
    // Qt learns of it by an event, which it has not processed.
    EXPECT_EQ(screens.mainVisibleFrame(), QRect(0, height, whole.width, whole.height - height));
}

} // namespace
} // namespace corvane::test
