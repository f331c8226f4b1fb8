#include "App/Platform/Linux/Windows/FakeSway.h"
#include "App/Support/Waiting.h"
#include "Platform/Linux/PanelHost.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <QCoreApplication>
#include <QPainterPath>
#include <QWidget>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <optional>
#include <set>
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
        return QTest::qWaitFor([&] { return sway_.requests.size() >= count; }, test::longestWait);
    }

    QWidget window_;
    recording::PresentedWindows activation_;
    test::FakeSway sway_;
    PanelDamage damage_;
    LinuxPanelHost host_{window_, activation_, damage_, sway_.socket()};
};

TEST_F(LinuxPanelHostTest, hasSwayPlaceTheWindowOnceItKnowsIt) {
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
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return !sway_.requests.empty() && sway_.requests.back().second.toStdString() == command(888, 500);
        },
        test::longestWait));
}

TEST_F(LinuxPanelHostTest, retriesAFewTimesOnlyAndNotForAHiddenWindow) {
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
    PanelDamage damage;
    LinuxPanelHost host(window, activation, damage, std::nullopt);
    host.setGeometry({120, 70, 340, 200}, QPainterPath());
    host.present();
    EXPECT_EQ(window.pos(), QPoint(120, 70));
    EXPECT_EQ(activation.presented.size(), 1U);
}

class ReportedPanelHost : public testing::Test {
  protected:
    ReportedPanelHost() {
        damage_.setVersion("v12.5");
        damage_.add(banner_);
        banner_.show();
        host_.setGeometry({120, 70, 340, 200}, QPainterPath());
    }

    ~ReportedPanelHost() override { damage_.remove(banner_); }

    void open() {
        host_.present();
        QCoreApplication::processEvents();
        reported_.clear();
    }

    using Windows = std::set<const QWidget*>;

    Windows reported_;
    PanelDamage damage_{[this](const QWidget& window) { reported_.insert(&window); }};
    QWidget banner_;
    QWidget window_;
    recording::PresentedWindows activation_;
    LinuxPanelHost host_{window_, activation_, damage_, std::nullopt};
};

TEST_F(ReportedPanelHost, reportsThePanelAndTheBannersToPicom12BeforeThePanelIsPainted) {
    open();
    window_.repaint();
    EXPECT_EQ(reported_, (Windows{&banner_, &window_}));
}

TEST_F(ReportedPanelHost, reportsThemToPicom12BeforeThePanelMovesAndTheBannersWhenItHides) {
    open();
    host_.setGeometry({120, 70, 340, 200}, QPainterPath());
    EXPECT_TRUE(reported_.empty()) << "it stays where it is";
    host_.setGeometry({140, 70, 340, 200}, QPainterPath());
    EXPECT_EQ(reported_, (Windows{&banner_, &window_}));
    reported_.clear();
    window_.hide();
    EXPECT_EQ(reported_, Windows{&banner_});
}

TEST_F(ReportedPanelHost, reportsThemToPicom12EachSecondWhileThePanelIsOpen) {
    open();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            return reported_ == Windows{&banner_, &window_};
        },
        test::longestWait));
}

} // namespace
} // namespace corvane
