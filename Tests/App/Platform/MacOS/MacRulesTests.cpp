#include "Controls/Buttons.h"
#include "Platform/MacOS/BringForward.h"
#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/Hover.h"
#include "Platform/MacOS/LoginItemStatus.h"
#include "Platform/MacOS/PathSegments.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Style/Shapes.h"

#include <QImage>
#include <QPainter>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using Kind = PathSegment::Kind;
using geometry::NativePoint;
using geometry::NativeRect;
using loginitem::Change;
using loginitem::Status;

TEST(MacGeometry, growsDownwardsFromTheMenuBarsScreen) {
    EXPECT_EQ(geometry::fromNative({0, 70, 1440, 806}, 900), QRect(0, 24, 1440, 806));
    EXPECT_EQ(geometry::fromNative({10, 0, 30, 900}, 900), QRect(10, 0, 30, 900));
}

TEST(MacGeometry, reachesScreensAboveBelowAndBeside) {
    EXPECT_EQ(geometry::fromNative({-1280, 900, 1280, 800}, 900), QRect(-1280, -800, 1280, 800)) << "above";
    EXPECT_EQ(geometry::fromNative({1440, -1080, 1920, 1080}, 900), QRect(1440, 900, 1920, 1080)) << "below";
}

TEST(MacGeometry, roundsEdgesSoThatNeighboursStayNeighbours) {
    const QRect left = geometry::fromNative({0, 0.4, 10.4, 20.3}, 100);
    const QRect right = geometry::fromNative({10.4, 0.4, 10.4, 20.3}, 100);
    EXPECT_EQ(left.x() + left.width(), right.x());
    EXPECT_EQ(left, QRect(0, 79, 10, 21));
    EXPECT_EQ(right, QRect(10, 79, 11, 21));
}

TEST(MacGeometry, givesALowerCornerThatLeadsBackToTheUpperOne) {
    EXPECT_EQ(geometry::toNative({460, 32}, {520, 96}, 900), (NativePoint{460, 772}));
    for (const QRect rect :
         {QRect(460, 32, 520, 96), QRect(-900, -700, 360, 64), QRect(1500, 1000, 340, 1)}) {
        const NativePoint corner = geometry::toNative(rect.topLeft(), rect.size(), 1080);
        const NativeRect native{corner.x, corner.y, static_cast<double>(rect.width()),
                                static_cast<double>(rect.height())};
        EXPECT_EQ(geometry::fromNative(native, 1080), rect);
    }
}

TEST(MacPathSegments, ofACardAreFourSidesAndFourCurves) {
    const std::vector<PathSegment> segments =
        pathSegments(shapes::continuousRoundedRect({0, 0, 520, 96}, 16));
    ASSERT_GE(segments.size(), 8U);
    EXPECT_EQ(segments.front().kind, Kind::move);
    const auto count = [&](Kind kind) {
        return std::count_if(segments.begin(), segments.end(),
                             [kind](const PathSegment& segment) { return segment.kind == kind; });
    };
    EXPECT_EQ(count(Kind::move), 1);
    EXPECT_EQ(count(Kind::curve), 4);
}

TEST(MacPathSegments, keepTheOrderOfACurvesPoints) {
    QPainterPath path({1, 2});
    path.lineTo(3, 4);
    path.cubicTo(5, 6, 7, 8, 9, 10);
    path.lineTo(11, 12);
    const std::vector<PathSegment> wanted{{Kind::move, {1, 2}, {}, {}},
                                          {Kind::line, {3, 4}, {}, {}},
                                          {Kind::curve, {9, 10}, {5, 6}, {7, 8}},
                                          {Kind::line, {11, 12}, {}, {}}};
    EXPECT_EQ(pathSegments(path), wanted);
}

TEST(MacPathSegments, drawTheSameShapeAgain) {
    const QPainterPath outline = shapes::continuousRoundedRect({0, 0, 360, 64}, 16);
    QPainterPath again;
    for (const PathSegment& segment : pathSegments(outline)) {
        switch (segment.kind) {
        case Kind::move:
            again.moveTo(segment.end);
            break;
        case Kind::line:
            again.lineTo(segment.end);
            break;
        case Kind::curve:
            again.cubicTo(segment.control1, segment.control2, segment.end);
            break;
        }
    }
    const auto picture = [](const QPainterPath& path) {
        QImage image(360, 64, QImage::Format_Grayscale8);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(path, Qt::white);
        return image;
    };
    EXPECT_EQ(picture(again), picture(outline));
    EXPECT_EQ(qGray(picture(outline).pixel(0, 0)), 0) << "a corner lets the desktop show";
}

TEST(MacPathSegments, ofNothingAreNone) {
    EXPECT_TRUE(pathSegments({}).empty());
}

TEST(MacLoginItem, hasTheSystemsStatusValues) {
    EXPECT_EQ(loginitem::status(0), Status::notRegistered);
    EXPECT_EQ(loginitem::status(1), Status::enabled);
    EXPECT_EQ(loginitem::status(2), Status::requiresApproval);
    EXPECT_EQ(loginitem::status(3), Status::notFound);
    EXPECT_EQ(loginitem::status(4), Status::notRegistered);
    EXPECT_EQ(loginitem::status(-1), Status::notRegistered);
}

TEST(MacLoginItem, isOnOnlyWhenTheSystemWillStartIt) {
    EXPECT_TRUE(loginitem::isEnabled(Status::enabled));
    EXPECT_FALSE(loginitem::isEnabled(Status::notRegistered));
    EXPECT_FALSE(loginitem::isEnabled(Status::requiresApproval));
    EXPECT_FALSE(loginitem::isEnabled(Status::notFound));
}

TEST(MacLoginItem, isRegisteredEvenIfTheSystemHasNotFoundItYet) {
    EXPECT_EQ(loginitem::change(Status::notFound, true), Change::registerItem);
    EXPECT_EQ(loginitem::change(Status::notRegistered, true), Change::registerItem);
    EXPECT_EQ(loginitem::change(Status::requiresApproval, true), Change::registerItem);
}

TEST(MacLoginItem, isLeftUnchangedIfItIsAsRequested) {
    EXPECT_EQ(loginitem::change(Status::enabled, true), Change::none);
    EXPECT_EQ(loginitem::change(Status::notRegistered, false), Change::none);
    EXPECT_EQ(loginitem::change(Status::notFound, false), Change::none);
}

TEST(MacLoginItem, isUnregisteredEvenIfTheUserHasSwitchedItOff) {
    EXPECT_EQ(loginitem::change(Status::enabled, false), Change::unregisterItem);
    EXPECT_EQ(loginitem::change(Status::requiresApproval, false), Change::unregisterItem);
}

/// Two buttons in a window, and where the mouse is.
class MacHoverTest : public testing::Test {
  protected:
    void SetUp() override {
        window.resize(300, 100);
        left.setGeometry(10, 10, 100, 40);
        right.setGeometry(150, 10, 100, 40);
        window.show();
        // This platform's own pointer is in the corner, and the new window is notified of it.
        QCoreApplication::processEvents();
    }

    void moveTo(QPoint place) { hover.move(*window.windowHandle(), place, window.mapToGlobal(place)); }
    void leave() { hover.leave(*window.windowHandle()); }

    QWidget window;
    BorderedButton left{QStringLiteral("Left"), &window};
    BorderedButton right{QStringLiteral("Right"), &window};
    Hover hover;
};

TEST_F(MacHoverTest, movesFromOneButtonToTheNext) {
    moveTo({20, 20});
    EXPECT_TRUE(left.underMouse());
    EXPECT_FALSE(right.underMouse());
    moveTo({160, 20});
    EXPECT_FALSE(left.underMouse());
    EXPECT_TRUE(right.underMouse());
    moveTo({130, 80});
    EXPECT_FALSE(right.underMouse());
}

TEST_F(MacHoverTest, leavesAButtonThatWasClicked) {
    moveTo({20, 20});
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, {20, 20});
    leave();
    EXPECT_FALSE(left.underMouse());
    EXPECT_FALSE(window.underMouse());
}

TEST_F(MacHoverTest, returnsToAnotherButton) {
    moveTo({20, 20});
    leave();
    leave();
    moveTo({160, 20});
    EXPECT_TRUE(right.underMouse());
    EXPECT_FALSE(left.underMouse());
}

/// Records its calls.
class AskedApplication : public OtherApplication {
  public:
    [[nodiscard]] bool isActive() const override { return active; }
    void yield() override { asked.emplace_back("yield"); }
    [[nodiscard]] bool request() override {
        asked.emplace_back("request");
        return sends;
    }
    void requestFromFront() override { asked.emplace_back("from the front"); }

    bool active = false;
    bool sends = true;
    std::vector<std::string> asked;
};

using Asked = std::vector<std::string>;
using std::chrono::milliseconds;

TEST(MacBringForward, offersTheActivationFirstIfItIsOurs) {
    recording::Time time;
    const auto other = std::make_shared<AskedApplication>();
    bringForward(other, OurState::active, time);
    EXPECT_EQ(other->asked, (Asked{"yield", "request"}));
}

TEST(MacBringForward, asksOnceIfThatWasEnough) {
    recording::Time time;
    const auto other = std::make_shared<AskedApplication>();
    bringForward(other, OurState::inactive, time);
    other->active = true;
    time.advance(milliseconds(5000));
    EXPECT_EQ(other->asked, Asked{"request"});
}

TEST(MacBringForward, asksTheOtherWayALittleLaterAndThenGivesUp) {
    recording::Time time;
    const auto other = std::make_shared<AskedApplication>();
    bringForward(other, OurState::inactive, time);
    time.advance(milliseconds(299));
    EXPECT_EQ(other->asked, Asked{"request"}) << "it may still be activating";
    time.advance(milliseconds(1));
    EXPECT_EQ(other->asked, (Asked{"request", "from the front"}));
    time.advance(milliseconds(60'000));
    EXPECT_EQ(other->asked.size(), 2U);
    EXPECT_EQ(time.pendingCount(), 0U);
}

TEST(MacBringForward, asksTheOtherWayAtOnceIfNothingWasSent) {
    recording::Time time;
    const auto other = std::make_shared<AskedApplication>();
    other->sends = false;
    bringForward(other, OurState::inactive, time);
    EXPECT_EQ(other->asked, (Asked{"request", "from the front"}));
    EXPECT_EQ(time.pendingCount(), 0U);
}

TEST(MacLoginItem, aFailureWithoutAReasonIsReportedInTheUsersLanguage) {
    const Words words = [](const Phrase& phrase) { return "<" + std::string(phrase.key) + ">"; };
    EXPECT_EQ(loginitem::reason("", words), "<The system gave no reason.>");
    EXPECT_EQ(loginitem::reason("Not allowed.", words), "Not allowed.");
}

} // namespace
} // namespace corvane
