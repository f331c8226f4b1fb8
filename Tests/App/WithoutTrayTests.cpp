#include "App/Support/MenuBarSupport.h"
#include "Controls/Paragraph.h"
#include "CorvaneApp.h"
#include "MainWindow.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace corvane {
namespace {

/// On a desktop without a tray, for a user who has completed onboarding.
class WithoutTray : public testing::Test {
  protected:
    void SetUp() override {
        world.defaults.setBoolean("hasCompletedOnboarding", true);
        tray().available = false;
    }

    CorvaneApp& app() {
        if (!app_) {
            app_.emplace(AgentConnector(world.home.path(), world.paths), world.defaults,
                         world.platform.services(), [](const QUrl& /*url*/) {});
        }
        return *app_;
    }
    recording::FakeStatusItem& tray() { return world.platform.statusItem; }
    void pass(int count) { world.platform.time.advance(std::chrono::seconds(count)); }

    [[nodiscard]] bool isMainWindowOpen() {
        return app().mainWindow() != nullptr && app().mainWindow()->isVisible();
    }
    /// Whether the main window says that there is no tray.
    bool saysSo() {
        for (const auto* const paragraph : app().mainWindow()->findChildren<Paragraph*>()) {
            if (!paragraph->isHidden() &&
                paragraph->text().startsWith(QStringLiteral("This desktop has no tray")))
                return true;
        }
        return false;
    }

    test::MenuBarWorld world;

  private:
    std::optional<CorvaneApp> app_;
};

TEST_F(WithoutTray, aStartByHandOpensTheMainWindowWhichExplainsHowToReopenIt) {
    app().launch();
    pass(4);
    EXPECT_FALSE(isMainWindowOpen()) << "a tray may still be starting";
    pass(1);
    ASSERT_TRUE(isMainWindowOpen());
    EXPECT_TRUE(saysSo());
    tray().available = true;
    Q_EMIT tray().availabilityChanged();
    EXPECT_FALSE(saysSo());
    EXPECT_TRUE(isMainWindowOpen());
    tray().available = false;
    Q_EMIT tray().availabilityChanged();
    EXPECT_TRUE(saysSo());
}

TEST_F(WithoutTray, theStartAtLoginOpensNothing) {
    world.platform.loginItem.isStarter = true;
    app().launch();
    pass(10);
    EXPECT_FALSE(isMainWindowOpen());
    Q_EMIT world.platform.singleInstance.reopened();
    ASSERT_TRUE(isMainWindowOpen());
    EXPECT_TRUE(saysSo());
}

TEST_F(WithoutTray, nothingOpensIfTheTrayAppearsInTime) {
    app().launch();
    pass(2);
    tray().available = true;
    Q_EMIT tray().availabilityChanged();
    pass(8);
    EXPECT_FALSE(isMainWindowOpen());
}

TEST_F(WithoutTray, aWindowClosedInTimeStaysClosed) {
    world.defaults.setBoolean("hasCompletedOnboarding", false);
    app().launch();
    ASSERT_TRUE(isMainWindowOpen());
    app().mainWindow()->close();
    pass(10);
    EXPECT_FALSE(isMainWindowOpen());
}

TEST_F(WithoutTray, theFirstRunPromisesNoneAsSoonAsTheSystemReportsThat) {
    world.defaults.setBoolean("hasCompletedOnboarding", false);
    app().launch();
    ASSERT_TRUE(isMainWindowOpen());
    Q_EMIT tray().availabilityChanged();
    EXPECT_TRUE(saysSo());
}

TEST_F(WithoutTray, theFirstRunPromisesNoneOnceItIsKnown) {
    world.defaults.setBoolean("hasCompletedOnboarding", false);
    app().launch();
    ASSERT_TRUE(isMainWindowOpen());
    EXPECT_FALSE(saysSo());
    pass(5);
    EXPECT_TRUE(saysSo());
    EXPECT_EQ(world.platform.activation.presented.size(), 1U) << "it is not raised again";
    app().mainWindow()->rebuild();
    EXPECT_TRUE(saysSo());
}

} // namespace
} // namespace corvane
