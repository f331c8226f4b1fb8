#include "App/Support/Waiting.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Platform/Shared/PlainPanelHost.h"

#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <vector>

namespace corvane {
namespace {

class PlainPanelHostTest : public testing::Test {
  protected:
    QWidget window_;
    recording::PresentedWindows activation_;
    PlainPanelHost host_{window_, activation_};
};

TEST_F(PlainPanelHostTest, movesTheWindowToItsPlace) {
    host_.setGeometry({120, 70, 340, 200}, QPainterPath());
    EXPECT_EQ(window_.pos(), QPoint(120, 70));
}

TEST_F(PlainPanelHostTest, reportsThatTheWindowGetsAndLosesTheFocus) {
    QSignalSpy changes(&host_, &PanelHost::keyboardChanged);
    EXPECT_FALSE(host_.hasKeyboard());
    host_.present();
    EXPECT_EQ(activation_.presented, std::vector<const QWidget*>{&window_});
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_, test::longestWait));
    EXPECT_TRUE(host_.hasKeyboard());
    EXPECT_GE(changes.count(), 1);

    changes.clear();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, test::longestWait));
    EXPECT_FALSE(host_.hasKeyboard());
    EXPECT_GE(changes.count(), 1);
}

} // namespace
} // namespace corvane
