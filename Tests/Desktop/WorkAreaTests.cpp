// The work area that the application uses, in this process on its own display.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/SidePanel.h"
#include "Platform/Linux/Activation.h"
#include "Platform/Linux/Screens.h"

#include <QApplication>
#include <QRect>
#include <QWidget>
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
    const QApplication application(count, arguments);
    const LinuxScreens screens;
    const Rect whole = desktop.screen().screenArea();
    EXPECT_EQ(screens.mainVisibleFrame(), QRect(whole.x, whole.y, whole.width, whole.height));

    constexpr int height = 40;
    const SidePanel panel(desktop.display(), {0, 0, whole.width, height});
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop.screen().workArea().y == height; }));
    // Qt learns of it by an event, which it has not processed.
    const QRect free(0, height, whole.width, whole.height - height);
    EXPECT_EQ(screens.mainVisibleFrame(), free);
    EXPECT_EQ(screens.visibleFrameAt({whole.width - 1, 0}), free);
    EXPECT_EQ(screens.visibleFrameAt({-100, -100}), free) << "beside all screens";

    // In its middle a window opens.
    QWidget window;
    window.setFixedSize(200, 100);
    LinuxActivation(screens).present(window);
    EXPECT_EQ(window.geometry(),
              QRect((whole.width - 200) / 2, height + (whole.height - height - 100) / 2, 200, 100));
}

} // namespace
} // namespace corvane::test
