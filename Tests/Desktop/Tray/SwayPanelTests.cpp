// The tray panel in a Wayland session: sway without a screen, whose windows float in the middle unless they
// are moved, and a bar that does not know its position.

#include "Desktop/Support/DesktopSession.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

class SwayPanel : public testing::Test {
  protected:
    void SetUp() override {
        if (!canStartSway())
            GTEST_SKIP() << "root cannot become an ordinary user here, and sway refuses root";
        desktop = std::make_unique<DesktopSession>("sway");
        ASSERT_TRUE(eventually([this] { return hasBar(); }));
        desktop->startApplication();
    }

    static bool eventually(const std::function<bool()>& condition) { return waitUntil(20s, condition); }

    /// Clicks the icon as a bar does that knows places within itself only; false if there is no icon.
    bool activate() {
        return desktop
                   ->run({"gdbus", "call", "--session", "--dest",
                          "org.kde.StatusNotifierItem-" + std::to_string(desktop->application().id()) + "-1",
                          "--object-path", "/StatusNotifierItem", "--method",
                          "org.kde.StatusNotifierItem.Activate", "18", "15"},
                         "gdbus")
                   ->wait(10s) == 0;
    }

    /// Whether the bar has reserved its area of the workspace.
    [[nodiscard]] bool hasBar() {
        EXPECT_EQ(
            desktop->run({"sh", "-c", "swaymsg -r -t get_workspaces >\"$HOME/reply\""}, "swaymsg")->wait(20s),
            0);
        const std::string bytes = fileBytes(desktop->home() / "reply").value_or("");
        const QJsonDocument spaces =
            QJsonDocument::fromJson(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
        return spaces[0]["rect"]["y"].toInt() > 0;
    }

    [[nodiscard]] std::vector<std::uint32_t> windows() { return desktop->screen().managedWindows("corvane"); }

    std::unique_ptr<DesktopSession> desktop;
};

TEST_F(SwayPanel, floatsInTheCornerBesideTheBarUntilSomethingElseIsUsed) {
    ASSERT_TRUE(eventually([this] { return activate(); })) << "no icon at the bar";
    ASSERT_TRUE(eventually([this] { return windows().size() == 1; }));
    Rect panel;
    EXPECT_TRUE(eventually([&] {
        panel = desktop->screen().geometry(windows().front());
        return panel.right() - 24 == 1280 - 4;
    })) << panel.x
        << " " << panel.y << " " << panel.width;
    EXPECT_GT(panel.y + 16, 10) << "below the bar";
    EXPECT_LT(panel.y + 16, 60);
    ASSERT_TRUE(eventually([this] { return desktop->screen().activeWindow() == windows().front(); }));
    const auto foot = desktop->run({"foot", "-c", "/dev/null", "sh", "-c", "cat"}, "foot");
    EXPECT_TRUE(eventually([this] { return windows().empty(); }));
}

} // namespace
} // namespace corvane::test
