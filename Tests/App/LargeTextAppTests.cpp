// The whole application while the desktop's text size and contrast change.

#include "App/Support/LargeText.h"
#include "App/Support/MenuBarSupport.h"
#include "BannerViews.h"
#include "CorvaneApp.h"
#include "MainWindow.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/SessionRow.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBar/TrayPanelView.h"
#include "OnboardingView.h"
#include "Settings/SettingsTabBar.h"
#include "Settings/SettingsWindow.h"
#include "SettingsView.h"
#include "Style/Tokens.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include <optional>

namespace corvane {
namespace {

class ChangingDesktop : public testing::Test {
  protected:
    CorvaneApp& app() {
        if (!app_) {
            app_.emplace(AgentConnector(world.home.path(), world.paths), world.defaults,
                         world.platform.services(), [](const QUrl& /*url*/) {});
        }
        return *app_;
    }

    void setTextScale(double scale) {
        world.platform.appearance.wantedTextScale = scale;
        Q_EMIT world.platform.appearance.changed();
        // Old views are deleted when the event loop runs next.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    void setContrast(Contrast contrast) {
        world.platform.appearance.wantedContrast = contrast;
        Q_EMIT world.platform.appearance.changed();
        QCoreApplication::processEvents(); // windows are notified of the new palette then
    }

    recording::PanelRecord& banner() { return *world.platform.panels.visible().at(0); }

    test::MenuBarWorld world;

  private:
    const test::LargeText ordinary_{1}; // restores the factor after the test
    std::optional<CorvaneApp> app_;
};

TEST_F(ChangingDesktop, startsAtTheTextSizeThatTheDesktopHas) {
    world.platform.appearance.wantedTextScale = 1.3;
    app().openMainWindow();
    EXPECT_EQ(app().mainWindow()->view().width(), 700);
    app().model().sendTestAlert();
    EXPECT_EQ(banner().size, QSize(650, 120));
}

TEST_F(ChangingDesktop, aVisibleBannerTakesTheNewTextSizeInPlace) {
    app().model().sendTestAlert();
    ASSERT_EQ(banner().size, QSize(520, 96));
    const recording::PanelRecord* const before = &banner();
    const std::size_t announced = world.platform.announcer.spoken.size();
    setTextScale(1.5);
    EXPECT_EQ(&banner(), before);
    EXPECT_EQ(banner().size, QSize(780, 144));
    EXPECT_EQ(banner().content->size(), QSize(780, 144));
    EXPECT_EQ(banner().origin, QPoint((1280 - 780) / 2, 38)) << "still in the middle";
    EXPECT_EQ(banner().fadeIns.size(), 1U) << "no other fade";
    EXPECT_EQ(world.platform.announcer.spoken.size(), announced) << "nor another announcement";
    setTextScale(1);
    EXPECT_EQ(banner().size, QSize(520, 96));
}

TEST_F(ChangingDesktop, aRebuiltBannersButtonsStillWork) {
    app().model().sendTestAlert();
    setTextScale(1.5);
    test::button(*banner().content, "Close")->click();
    EXPECT_TRUE(world.platform.panels.visible().empty());
}

TEST_F(ChangingDesktop, aRebuiltDoneBannerIsDismissedOnTime) {
    app();
    world.platform.time.advance(std::chrono::seconds(1));
    const auto file = world.paths.events() / "1-1.event";
    test::writeFile(file, "corvane-event 1\nsource=codex\nterm=\nbundle=\n---\n"
                          R"({"type":"agent-turn-complete","thread-id":"a","cwd":"/w/shop"})");
    test::setModificationDate(file, world.platform.time.now());
    world.platform.time.advance(std::chrono::seconds(1));
    ASSERT_EQ(banner().size, QSize(360, 64));
    world.platform.time.advance(std::chrono::seconds(3));
    setTextScale(1.25);
    EXPECT_EQ(banner().size, QSize(450, 80));
    world.platform.time.advance(std::chrono::milliseconds(2999));
    EXPECT_EQ(world.platform.panels.visible().size(), 1U);
    world.platform.time.advance(std::chrono::milliseconds(1));
    EXPECT_TRUE(world.platform.panels.visible().empty());
}

TEST_F(ChangingDesktop, openWindowsTakeTheNewTextSize) {
    app().openMainWindow();
    app().openSettings();
    app().openPanel();
    app().settingsWindow()->view().tabs().setCurrentIndex(1);
    const int panelWidth = app().panel()->cardGeometry().width();
    EXPECT_EQ(panelWidth, 340);
    setTextScale(1.5);
    EXPECT_EQ(app().mainWindow()->view().size(), QSize(840, 690));
    EXPECT_TRUE(app().mainWindow()->view().isVisible());
    EXPECT_EQ(app().settingsWindow()->size(), QSize(840, 660));
    EXPECT_TRUE(app().settingsWindow()->view().isVisible());
    EXPECT_EQ(app().settingsWindow()->view().tabs().currentIndex(), 1) << "the chosen tab stays";
    EXPECT_EQ(app().panel()->cardGeometry().width(), 510);
    EXPECT_TRUE(app().panel()->view().isVisible());

    setTextScale(1);
    EXPECT_EQ(app().mainWindow()->view().size(), QSize(560, 460));
    EXPECT_EQ(app().settingsWindow()->size(), QSize(560, 440));
    EXPECT_EQ(app().panel()->cardGeometry().width(), 340);
}

TEST_F(ChangingDesktop, theRebuiltPanelStillHandlesArrowKeys) {
    app().model().connectAgent(AgentKind::codex);
    const auto file = world.paths.events() / "1-1.event";
    test::writeFile(file, "corvane-event 1\nsource=codex\nterm=\nbundle=\n---\n"
                          R"({"type":"agent-turn-complete","thread-id":"a","cwd":"/w/shop"})");
    test::setModificationDate(file, world.platform.time.now());
    world.platform.time.advance(std::chrono::seconds(1));
    app().openPanel();
    setTextScale(1.5);
    QTest::keyClick(app().panel()->windowHandle(), Qt::Key_Down);
    const auto* const row = app().panel()->view().findChild<SessionRow*>();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(app().panel()->focusWidget(), row);
}

TEST_F(ChangingDesktop, theRebuiltFirstRunStillClosesItsWindow) {
    app().openMainWindow();
    setTextScale(1.25);
    test::button(app().mainWindow()->view(), "Done")->click();
    EXPECT_FALSE(app().mainWindow()->isVisible());
    EXPECT_TRUE(app().model().hasCompletedOnboarding());
}

TEST_F(ChangingDesktop, menusTakeTheTextSizeButTheDesktopsFontDoesNot) {
    const double ordinary = QApplication::font("QMenu").pointSizeF();
    const double font = QApplication::font().pointSizeF();
    ASSERT_GT(ordinary, 0);
    app();
    setTextScale(1.5);
    EXPECT_NEAR(QApplication::font("QMenu").pointSizeF(), 1.5 * ordinary, 0.01);
    EXPECT_NEAR(world.platform.statusItem.menu->font().pointSizeF(), 1.5 * ordinary, 0.01);
    EXPECT_EQ(QApplication::font().pointSizeF(), font);
    setTextScale(1);
    EXPECT_NEAR(QApplication::font("QMenu").pointSizeF(), ordinary, 0.01);
}

TEST_F(ChangingDesktop, aContrastChangeRebuildsNothing) {
    app().openMainWindow();
    const OnboardingView* const before = &app().mainWindow()->view();
    app().model().sendTestAlert();
    static_cast<BannerCard&>(*banner().content).setBlurredBehind(true);
    setContrast(Contrast::high);
    EXPECT_TRUE(Tokens::look(QApplication::palette()).isHighContrast());
    EXPECT_TRUE(Tokens::look(app().mainWindow()->view().palette()).isHighContrast());
    EXPECT_EQ(static_cast<BannerCard&>(*banner().content).fillColor().alpha(), 255);
    EXPECT_EQ(&app().mainWindow()->view(), before);
    EXPECT_EQ(banner().contentCount, 1);
    setContrast(Contrast::normal);
    EXPECT_LT(static_cast<BannerCard&>(*banner().content).fillColor().alpha(), 255);
}

} // namespace
} // namespace corvane
