#include "App/Support/Sessions.h"
#include "BannerController.h"
#include "BannerViews.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Sessions/AlertText.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QStyleHints>
#include <QThread>
#include <QWidget>
#include <QWindow>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <chrono>

namespace corvane {
namespace {

using recording::PanelRecord;
using recording::RecordingPlatform;
using std::chrono::milliseconds;
using test::doneSession;
using test::waitingSession;

class BannerControllerTest : public testing::Test {
  protected:
    [[nodiscard]] AgentSession waiting(const std::string& id) const {
        return waitingSession(id, platform_.time.now());
    }
    [[nodiscard]] AgentSession done(const std::string& id) const {
        return doneSession(id, platform_.time.now());
    }

    static void click(PanelRecord& panel, const char* text) {
        for (auto* const button : panel.content->findChildren<QAbstractButton*>()) {
            if (button->text() == QLatin1String(text) || button->accessibleName() == QLatin1String(text)) {
                button->click();
                return;
            }
        }
        FAIL() << "no button " << text;
    }

    RecordingPlatform platform_;
    BannerController controller_{platform_.services()};
};

TEST_F(BannerControllerTest, aWaitingBannerIsAtTheTopCentreOfTheMainScreen) {
    platform_.screens.frame = QRect(100, 30, 1280, 770);
    controller_.showWaiting(waiting("a"));
    ASSERT_EQ(platform_.panels.all.size(), 1U);
    const PanelRecord& panel = *platform_.panels.all[0];
    EXPECT_EQ(panel.size, QSize(520, 96));
    EXPECT_EQ(panel.origin, QPoint(100 + (1280 - 520) / 2, 30 + 8));
    EXPECT_TRUE(panel.isVisible);
}

TEST_F(BannerControllerTest, aPassThatChangesNothingLeavesTheScreenAlone) {
    controller_.update([this] { controller_.showWaiting(waiting("a")); });
    const PanelRecord& panel = *platform_.panels.all[0];
    const QPoint place = panel.origin;
    platform_.panels.stacking.clear();
    platform_.screens.frame = QRect(100, 30, 1280, 770);
    controller_.update([] {});
    EXPECT_TRUE(panel.origin == place && platform_.panels.stacking.empty());
    Q_EMIT platform_.screens.changed();
    EXPECT_NE(panel.origin, place);
}

TEST_F(BannerControllerTest, aDoneBannerHasItsOwnSize) {
    controller_.showDone(done("a"));
    EXPECT_EQ(platform_.panels.all.at(0)->size, QSize(360, 64));
}

TEST_F(BannerControllerTest, bannersStackWithTheNewestOnTop) {
    controller_.showWaiting(waiting("a"));
    controller_.showDone(done("b"));
    controller_.showWaiting(waiting("c"));
    EXPECT_EQ(platform_.panels.all[2]->origin.y(), 38);
    EXPECT_EQ(platform_.panels.all[1]->origin, QPoint((1280 - 360) / 2, 38 + 96 + 8));
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 38 + 96 + 8 + 64 + 8);
}

TEST_F(BannerControllerTest, bannersMoveBelowAnOpenWindowThatTheyWouldCover) {
    controller_.showWaiting(waiting("a"));
    controller_.showWaiting(waiting("b"));
    QWidget menu;
    menu.setGeometry(800, 60, 200, 100); // beside the middle, at the height of both banners
    controller_.keepClearOf({{&menu, menu.geometry()}});
    const auto& all = platform_.panels.all;
    EXPECT_EQ(all[1]->origin, QPoint(380, 60 + 100 + 8));
    EXPECT_EQ(all[0]->origin, QPoint(380, 60 + 100 + 8 + 96 + 8));
    EXPECT_EQ(platform_.panels.above, std::vector<QWidget*>{&menu});
}

TEST_F(BannerControllerTest, bannersStayWhereTheyCoverNothing) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(901, 38, 200, 100);
    controller_.keepClearOf({{&menu, menu.geometry()}});
    EXPECT_EQ(platform_.panels.all[0]->origin, QPoint(380, 38));
}

TEST_F(BannerControllerTest, aShadowWiderThanTheGapIsAvoidedToo) {
    controller_.showWaiting(waiting("a"));
    QWidget panel;
    panel.setContentsMargins(24, 16, 24, 32);
    panel.setGeometry(400, 30, 388, 300);
    controller_.keepClearOf({{&panel, panel.geometry()}});
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 30 + 300);
}

TEST_F(BannerControllerTest, aBannerShownWhileAMenuIsOpenAvoidsIt) {
    QWidget menu;
    menu.setGeometry(500, 30, 200, 300);
    controller_.keepClearOf({{&menu, menu.geometry()}});
    controller_.showWaiting(waiting("a"));
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 30 + 300 + 8);
}

TEST_F(BannerControllerTest, bannersAvoidAllOpenWindows) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(500, 30, 200, 100);
    QWidget submenu;
    submenu.setGeometry(700, 120, 100, 200);
    controller_.keepClearOf({{&submenu, submenu.geometry()}, {&menu, menu.geometry()}});
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 120 + 200 + 8);
}

TEST_F(BannerControllerTest, withoutRoomBelowABannerStaysBehind) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(500, 30, 200, 700);
    controller_.keepClearOf({{&menu, menu.geometry()}});
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 38);
}

TEST_F(BannerControllerTest, bannersReturnAMomentAfterTheWindowHasClosed) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(500, 30, 200, 100);
    controller_.keepClearOf({{&menu, menu.geometry()}});
    controller_.keepClearOf({});
    EXPECT_TRUE(platform_.panels.above.empty());
    const int lowered = 30 + 100 + 8;
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), lowered)
        << "the press that closed it may be on the banner";
    const milliseconds interval(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    platform_.time.advance(interval - milliseconds(1));
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), lowered);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 38);
}

TEST_F(BannerControllerTest, bannersReturnEvenIfTheButtonsReleaseIsNeverSeen) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(500, 30, 200, 100);
    menu.show();
    controller_.keepClearOf({{&menu, menu.geometry()}});
    QTest::mousePress(menu.windowHandle(), Qt::LeftButton);
    controller_.keepClearOf({});
    const milliseconds interval(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    platform_.time.advance(2 * interval);
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 30 + 100 + 8) << "the button is still pressed";
    platform_.time.advance(3 * interval);
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 38);
    QTest::mouseRelease(menu.windowHandle(), Qt::LeftButton);
}

TEST_F(BannerControllerTest, bannersDoNotReturnIfAnotherWindowHasOpenedMeanwhile) {
    controller_.showWaiting(waiting("a"));
    QWidget menu;
    menu.setGeometry(500, 30, 200, 100);
    controller_.keepClearOf({{&menu, menu.geometry()}});
    controller_.keepClearOf({});
    controller_.keepClearOf({{&menu, menu.geometry()}});
    platform_.time.advance(milliseconds(5000));
    EXPECT_EQ(platform_.panels.all[0]->origin.y(), 30 + 100 + 8);
}

TEST_F(BannerControllerTest, olderCardsAreAboveTheShadowsOfNewerOnes) {
    controller_.showWaiting(waiting("a"));
    controller_.showWaiting(waiting("b"));
    controller_.showWaiting(waiting("c"));
    const auto& all = platform_.panels.all;
    EXPECT_EQ(platform_.panels.stacking,
              (std::vector<const PanelRecord*>{all[2].get(), all[1].get(), all[0].get()}));
    controller_.dismiss("claude:b");
    EXPECT_EQ(platform_.panels.stacking.back(), all[0].get());
    EXPECT_EQ(*(platform_.panels.stacking.end() - 2), all[2].get());
}

TEST_F(BannerControllerTest, aFourthBannerEvictsTheOldestAndAFifthTheNext) {
    for (const char* id : {"a", "b", "c", "d"})
        controller_.showWaiting(waiting(id));
    const auto& all = platform_.panels.all;
    EXPECT_EQ(all[0]->fadeOuts.size(), 1U);
    EXPECT_EQ(all[3]->origin.y(), 38);
    EXPECT_EQ(all[2]->origin.y(), 38 + 104);
    EXPECT_EQ(all[1]->origin.y(), 38 + 208);
    EXPECT_EQ(platform_.panels.visible().size(), 3U);

    controller_.showWaiting(waiting("e"));
    EXPECT_EQ(all[1]->fadeOuts.size(), 1U);
    EXPECT_EQ(all[2]->fadeOuts.size(), 0U);
    EXPECT_EQ(platform_.panels.visible().size(), 3U);
}

TEST_F(BannerControllerTest, aRefreshReplacesTheContentInPlaceAndAnnouncesAgain) {
    controller_.showWaiting(waiting("a"));
    controller_.showWaiting(waiting("b"));
    AgentSession session = waiting("a");
    session.message = "Claude needs your permission to use Write";
    controller_.showWaiting(session);

    ASSERT_EQ(platform_.panels.all.size(), 2U);
    const PanelRecord& panel = *platform_.panels.all[0];
    EXPECT_EQ(panel.contentCount, 2);
    EXPECT_EQ(panel.size, QSize(520, 96));
    EXPECT_EQ(panel.origin.y(), 38 + 104);
    EXPECT_EQ(panel.fadeIns.size(), 1U);
    ASSERT_EQ(platform_.announcer.spoken.size(), 3U);
    EXPECT_EQ(platform_.announcer.spoken[2].toStdString(),
              "Claude is waiting for you, shop · wants to use Write");
}

TEST_F(BannerControllerTest, everyBannerIsAnnouncedByItsTitleAndSubtitle) {
    controller_.showWaiting(waiting("a"));
    controller_.showDone(done("b"));
    ASSERT_EQ(platform_.announcer.spoken.size(), 2U);
    EXPECT_EQ(platform_.announcer.spoken[0].toStdString(),
              "Claude is waiting for you, shop · wants to use Bash");
    EXPECT_EQ(platform_.announcer.spoken[1].toStdString(), "Claude finished, shop");
}

TEST_F(BannerControllerTest, waitingAndDoneBannersOfOneSessionAreTwo) {
    controller_.showWaiting(waiting("a"));
    controller_.showDone(done("a"));
    EXPECT_EQ(platform_.panels.visible().size(), 2U);
    controller_.dismiss("claude:a");
    ASSERT_EQ(platform_.panels.visible().size(), 1U);
    EXPECT_EQ(platform_.panels.visible()[0]->size, QSize(360, 64));
    controller_.dismiss("done:claude:a");
    EXPECT_TRUE(platform_.panels.visible().empty());
}

TEST_F(BannerControllerTest, aDismissalClosesTheGapAtOnceAndFadesInPlace) {
    controller_.showWaiting(waiting("a"));
    controller_.showWaiting(waiting("b"));
    controller_.dismiss("claude:b");
    const auto& all = platform_.panels.all;
    EXPECT_EQ(all[0]->origin.y(), 38);
    EXPECT_EQ(all[1]->origin.y(), 38);
    ASSERT_EQ(all[1]->fadeOuts.size(), 1U);
    EXPECT_EQ(all[1]->fadeOuts[0], milliseconds(180));
}

TEST_F(BannerControllerTest, aFadedPanelIsOrderedOutAfterTwoTenthsOfASecond) {
    controller_.showWaiting(waiting("a"));
    controller_.dismiss("claude:a");
    const std::weak_ptr<PanelRecord> record = platform_.panels.all[0];
    platform_.time.advance(milliseconds(199));
    EXPECT_EQ(record.lock()->orderOutCount, 0);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(record.lock()->orderOutCount, 1);
    // Only the list of records still refers to the panel.
    EXPECT_EQ(record.use_count(), 1);
}

TEST_F(BannerControllerTest, anUnknownIdentifierIsIgnored) {
    controller_.showWaiting(waiting("a"));
    controller_.dismiss("claude:b");
    controller_.dismiss("done:claude:a");
    EXPECT_EQ(platform_.panels.visible().size(), 1U);
    EXPECT_TRUE(platform_.panels.all[0]->fadeOuts.empty());
}

TEST_F(BannerControllerTest, presentingDuringTheFadeCreatesANewPanel) {
    controller_.showWaiting(waiting("a"));
    controller_.dismiss("claude:a");
    platform_.time.advance(milliseconds(100));
    controller_.showWaiting(waiting("a"));
    ASSERT_EQ(platform_.panels.all.size(), 2U);
    EXPECT_EQ(platform_.panels.all[1]->fadeIns.size(), 1U);
    platform_.time.advance(milliseconds(100));
    EXPECT_FALSE(platform_.panels.all[0]->isVisible);
    EXPECT_TRUE(platform_.panels.all[1]->isVisible);
}

TEST_F(BannerControllerTest, aDoneBannerIsDismissedAfterSixSecondsRefreshedOrNot) {
    controller_.showDone(done("a"));
    platform_.time.advance(milliseconds(3000));
    controller_.showDone(done("a"));
    platform_.time.advance(milliseconds(2999));
    EXPECT_EQ(platform_.panels.visible().size(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_TRUE(platform_.panels.visible().empty());
}

TEST_F(BannerControllerTest, aRefreshedDoneBannerKeepsItsPlaceAndIsAnnouncedAgain) {
    controller_.showDone(done("a"));
    controller_.showWaiting(waiting("b"));
    AgentSession session = done("a");
    session.cwd = "/w/ledger";
    controller_.showDone(session);

    ASSERT_EQ(platform_.panels.all.size(), 2U);
    const PanelRecord& panel = *platform_.panels.all[0];
    EXPECT_EQ(panel.contentCount, 2);
    EXPECT_EQ(panel.size, QSize(360, 64));
    EXPECT_EQ(panel.origin.y(), 38 + 104);
    EXPECT_EQ(panel.fadeIns.size(), 1U);
    ASSERT_EQ(platform_.announcer.spoken.size(), 3U);
    EXPECT_EQ(platform_.announcer.spoken[2].toStdString(), "Claude finished, ledger");
}

TEST_F(BannerControllerTest, theSecondTimerOfARefreshStillRemovesABannerShownAgainLater) {
    controller_.showDone(done("a"));
    platform_.time.advance(milliseconds(3000));
    controller_.showDone(done("a"));
    platform_.time.advance(milliseconds(4000));
    ASSERT_TRUE(platform_.panels.visible().empty());
    controller_.showDone(done("a"));
    platform_.time.advance(milliseconds(1999));
    EXPECT_EQ(platform_.panels.visible().size(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_TRUE(platform_.panels.visible().empty());
}

TEST_F(BannerControllerTest, anEvictedDoneBannersTimerDoesNothing) {
    controller_.showDone(done("a"));
    for (const char* id : {"b", "c", "d"})
        controller_.showWaiting(waiting(id));
    platform_.time.advance(milliseconds(200));
    const PanelRecord& evicted = *platform_.panels.all[0];
    ASSERT_EQ(evicted.orderOutCount, 1);
    platform_.time.advance(milliseconds(6000));
    EXPECT_EQ(evicted.fadeOuts.size(), 1U);
    EXPECT_EQ(evicted.orderOutCount, 1);
    EXPECT_EQ(platform_.panels.visible().size(), 3U);
}

TEST_F(BannerControllerTest, theTimerOfADoneBannerClosedEarlyDoesNothing) {
    controller_.showDone(done("a"));
    click(*platform_.panels.all[0], "Close");
    EXPECT_EQ(platform_.panels.all[0]->fadeOuts.size(), 1U);
    platform_.time.advance(milliseconds(6000));
    EXPECT_EQ(platform_.panels.all[0]->fadeOuts.size(), 1U);
    EXPECT_EQ(platform_.panels.all[0]->orderOutCount, 1);
}

TEST_F(BannerControllerTest, aWaitingBannerNeverTimesOut) {
    controller_.showWaiting(waiting("a"));
    platform_.time.advance(std::chrono::hours(12));
    EXPECT_EQ(platform_.panels.visible().size(), 1U);
}

TEST_F(BannerControllerTest, bannersSlideInUnlessMotionIsReduced) {
    controller_.showWaiting(waiting("a"));
    platform_.appearance.motionIsReduced = true;
    controller_.showWaiting(waiting("b"));
    const auto& all = platform_.panels.all;
    EXPECT_EQ(all[0]->slides.at(0), 12);
    EXPECT_EQ(all[1]->slides.at(0), 0);
    EXPECT_EQ(all[0]->fadeIns.at(0), milliseconds(220));
    EXPECT_EQ(all[1]->fadeIns.at(0), milliseconds(220));
    EXPECT_EQ(all[1]->origin.y(), 38);
}

TEST_F(BannerControllerTest, fadingOutIsTheSameWithReducedMotion) {
    platform_.appearance.motionIsReduced = true;
    controller_.showWaiting(waiting("a"));
    controller_.dismiss("claude:a");
    const PanelRecord& panel = *platform_.panels.all[0];
    EXPECT_EQ(panel.fadeOuts, std::vector<milliseconds>{milliseconds(180)});
    platform_.time.advance(milliseconds(199));
    EXPECT_EQ(panel.orderOutCount, 0);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(panel.orderOutCount, 1);
}

TEST_F(BannerControllerTest, theWaitingBannersButtonsCallTheirCallbacks) {
    std::vector<std::string> jumps;
    std::vector<std::string> snoozes;
    controller_.onJump = [&](const AgentSession& session) { jumps.push_back(session.id()); };
    controller_.onSnooze = [&](const AgentSession& session) { snoozes.push_back(session.id()); };
    controller_.showWaiting(waiting("a"));
    PanelRecord& panel = *platform_.panels.all[0];

    click(panel, "Go to Terminal");
    EXPECT_EQ(jumps, std::vector<std::string>{"claude:a"});
    click(panel, "Snooze");
    EXPECT_EQ(snoozes, std::vector<std::string>{"claude:a"});
    // Neither removes the banner: that is up to the callback.
    EXPECT_TRUE(panel.fadeOuts.empty());

    click(panel, "Close");
    EXPECT_EQ(panel.fadeOuts.size(), 1U);
}

TEST_F(BannerControllerTest, aButtonWithoutACallbackDoesNothing) {
    controller_.showWaiting(waiting("a"));
    click(*platform_.panels.all[0], "Go to Terminal");
    click(*platform_.panels.all[0], "Snooze");
    EXPECT_TRUE(platform_.panels.all[0]->fadeOuts.empty());
}

TEST_F(BannerControllerTest, aCallbackMayReplaceTheBannerWhoseButtonIsPressed) {
    controller_.onJump = [&](const AgentSession& session) { controller_.showWaiting(session); };
    controller_.showWaiting(waiting("a"));
    click(*platform_.panels.all[0], "Go to Terminal");
    EXPECT_EQ(platform_.panels.all[0]->contentCount, 2);
}

TEST(BannerController, aPressAfterTheControllersDestructionDoesNothing) {
    RecordingPlatform platform;
    auto controller = std::make_unique<BannerController>(platform.services());
    int jumps = 0;
    controller->onJump = [&](const AgentSession&) { ++jumps; };
    controller->showWaiting(waitingSession("a", platform.time.now()));
    controller->showDone(doneSession("b", platform.time.now()));
    controller.reset();
    for (auto* const button : platform.panels.all[0]->content->findChildren<QAbstractButton*>())
        button->click();
    platform.time.advance(milliseconds(6000));
    EXPECT_EQ(jumps, 0);
    EXPECT_TRUE(platform.panels.all[1]->fadeOuts.empty());
}

TEST_F(BannerControllerTest, withoutAScreenABannerIsShownWhereItIs) {
    platform_.screens.frame = std::nullopt;
    controller_.showWaiting(waiting("a"));
    EXPECT_EQ(platform_.panels.all[0]->origin, QPoint(0, 0));
    EXPECT_TRUE(platform_.panels.all[0]->isVisible);
}

TEST_F(BannerControllerTest, bannersFollowTheScreen) {
    controller_.showWaiting(waiting("a"));
    controller_.showWaiting(waiting("b"));
    platform_.screens.setFrame(QRect(0, 0, 1000, 700));
    EXPECT_EQ(platform_.panels.all[1]->origin, QPoint(240, 8));
    EXPECT_EQ(platform_.panels.all[0]->origin, QPoint(240, 112));
}

TEST_F(BannerControllerTest, anOddRemainderOfTheScreenLeavesTheBannerOnWholePixels) {
    platform_.screens.frame = QRect(0, 0, 1281, 700);
    controller_.showWaiting(waiting("a"));
    EXPECT_EQ(platform_.panels.all[0]->origin.x(), 380);
}

TEST_F(BannerControllerTest, aStormOfEventsLeavesThreeBannersInOrder) {
    for (int round = 0; round < 200; ++round) {
        const std::string id = std::to_string(round % 7);
        if (round % 5 == 4) {
            controller_.dismiss("claude:" + id);
        } else {
            controller_.showWaiting(waiting(id));
        }
        const auto visible = platform_.panels.visible();
        ASSERT_LE(visible.size(), 3U);
        int top = 38;
        for (const PanelRecord* const panel : visible) {
            ASSERT_EQ(panel->origin.y(), top);
            top += 104;
        }
    }
    platform_.time.advance(milliseconds(200));
    std::size_t visibleCount = 0;
    for (const auto& panel : platform_.panels.all)
        visibleCount += panel->isVisible ? 1U : 0U;
    EXPECT_EQ(visibleCount, platform_.panels.visible().size());
}

class BannerControllerDeathTest : public BannerControllerTest {
  protected:
    BannerControllerDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    template <typename Call>
    static void onAnotherThread(Call call) {
        QThread* const thread = QThread::create(call);
        thread->start();
        thread->wait();
    }
};

TEST_F(BannerControllerDeathTest, dismissingFromAnotherThreadEndsTheProgram) {
    EXPECT_DEATH(onAnotherThread([this] { controller_.dismiss("claude:a"); }), "main thread");
}

TEST_F(BannerControllerDeathTest, showingFromAnotherThreadEndsTheProgram) {
    EXPECT_DEATH(onAnotherThread([this] { controller_.showWaiting(waiting("a")); }), "main thread");
    EXPECT_DEATH(onAnotherThread([this] { controller_.showDone(done("a")); }), "main thread");
}

} // namespace
} // namespace corvane
