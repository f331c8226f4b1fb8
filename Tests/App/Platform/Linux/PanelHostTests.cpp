#include "App/Platform/Linux/Windows/FakeSway.h"
#include "Platform/Linux/PanelHost.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <QPainterPath>
#include <QWidget>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace corvane {
namespace {

class LinuxPanelHostTest : public testing::Test {
  protected:
    LinuxPanelHostTest() {
        sway_.respond = [](std::uint32_t type, const QByteArray& /*command*/) {
            return test::FakeSway::message(type, R"([{"success":false,"error":"No matching node."}])");
        };
    }

    [[nodiscard]] std::string command(int x, int y) const {
        return "[id=" + std::to_string(window_.winId()) + "] move absolute position " + std::to_string(x) +
               " " + std::to_string(y);
    }
    [[nodiscard]] bool isRequested(std::size_t count) {
        return QTest::qWaitFor([&] { return sway_.requests.size() >= count; });
    }

    QWidget window_;
    recording::PresentedWindows activation_;
    test::FakeSway sway_;
    LinuxPanelHost host_{window_, activation_, sway_.socket()};
};

TEST_F(LinuxPanelHostTest, hasSwayPutTheWindowAtItsPlaceOnceItKnowsIt) {
    host_.setGeometry({888, 18, 388, 236}, QPainterPath());
    host_.present();
    EXPECT_EQ(activation_.presented.size(), 1U);
    ASSERT_TRUE(isRequested(2)) << "again, as sway may not know the window yet";
    EXPECT_EQ(sway_.requests.front().first, 0U);
    EXPECT_EQ(sway_.requests.front().second.toStdString(), command(888, 18));
    EXPECT_EQ(sway_.requests.back().second.toStdString(), command(888, 18));
}

TEST_F(LinuxPanelHostTest, hasSwayMoveAWindowThatGrows) {
    host_.setGeometry({888, 18, 388, 236}, QPainterPath());
    host_.present();
    ASSERT_TRUE(isRequested(1));
    sway_.requests.clear();
    host_.setGeometry({888, 500, 388, 280}, QPainterPath());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return !sway_.requests.empty() && sway_.requests.back().second.toStdString() == command(888, 500);
    }));
}

TEST_F(LinuxPanelHostTest, asksAFewTimesOnlyAndNotForAHiddenWindow) {
    host_.setGeometry({10, 10, 388, 236}, QPainterPath());
    EXPECT_TRUE(sway_.requests.empty());
    host_.present();
    ASSERT_TRUE(isRequested(6));
    EXPECT_FALSE(QTest::qWaitFor([&] { return sway_.requests.size() > 6; }, 300));
    sway_.requests.clear();
    window_.hide();
    host_.setGeometry({20, 20, 388, 236}, QPainterPath());
    EXPECT_FALSE(QTest::qWaitFor([&] { return !sway_.requests.empty(); }, 200));
}

TEST(LinuxPanelHost, leavesTheWindowToOtherWindowManagers) {
    QWidget window;
    recording::PresentedWindows activation;
    LinuxPanelHost host(window, activation, std::nullopt);
    host.setGeometry({120, 70, 340, 200}, QPainterPath());
    host.present();
    EXPECT_EQ(window.pos(), QPoint(120, 70));
    EXPECT_EQ(activation.presented.size(), 1U);
}

} // namespace
} // namespace corvane
