// The card that says that a terminal could not be brought to the front.

#include "App/Support/AppModelSupport.h"
#include "App/Support/BannerViewsSupport.h"
#include "App/Support/DirectionMarks.h"
#include "TerminalNotice.h"

#include <QAbstractButton>
#include <QDir>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using std::chrono::milliseconds;
using test::AppModelTest;
using test::BannerViewsTest;
using test::waitingSession;
using Strings = std::vector<std::string>;

class TerminalNoticeTest : public BannerViewsTest {
  protected:
    [[nodiscard]] std::unique_ptr<TerminalNotice> notice(const std::string& folder) {
        AgentSession session = waitingSession("s", start);
        session.cwd = folder;
        return std::make_unique<TerminalNotice>(session, [this] { calls_ += "close "; });
    }
};

TEST_F(TerminalNoticeTest, showsWhatFailedAndWhichFolderItIs) {
    const auto card = notice("/w/shop");
    EXPECT_EQ(texts(*card), (Strings{"Couldn't bring the terminal forward", "/w/shop"}));
    EXPECT_EQ(card->accessibleName().toStdString(), "Couldn't bring the terminal forward, /w/shop");
    EXPECT_EQ(card->size(), QSize(440, 64));
}

TEST_F(TerminalNoticeTest, theHomeFolderIsATilde) {
    const std::string home = QDir::homePath().toStdString();
    EXPECT_EQ(texts(*notice(home + "/shop")).at(1), "~/shop");
    EXPECT_EQ(texts(*notice(home)).at(1), "~");
    EXPECT_EQ(texts(*notice(home + "er")).at(1), home + "er");
}

TEST_F(TerminalNoticeTest, onlyTheCrossCanBePressed) {
    const auto card = notice("/w/shop");
    const auto buttons = card->findChildren<QAbstractButton*>();
    ASSERT_EQ(buttons.size(), 1);
    EXPECT_EQ(buttons[0]->accessibleName().toStdString(), "Close");
    buttons[0]->click();
    EXPECT_EQ(calls_, "close ");
}

TEST_F(TerminalNoticeTest, aFoldersDirectionDoesNotAffectTheRest) {
    const auto card = notice("/w/" + test::rightToLeftOverride() + "pohs\n<b>x</b>");
    render(*card);
    const auto* const folder = card->findChildren<LineLabel*>().at(1);
    EXPECT_EQ(folder->shownText().toStdString(),
              test::firstStrongIsolate() + "/w/pohs <b>x</b>" + QString(QChar(0x2069)).toStdString());
    EXPECT_FALSE(card->accessibleName().contains(QChar(0x202E)));
    EXPECT_FALSE(card->accessibleName().contains(QLatin1Char('\n')));
}

TEST_F(TerminalNoticeTest, aLongFolderIsElidedInTheMiddleAndTheTitleIsNot) {
    const auto card = notice("/w/" + std::string(200, 'a') + "/the-end");
    render(*card);
    const auto labels = card->findChildren<LineLabel*>();
    EXPECT_FALSE(labels.at(0)->isCut());
    EXPECT_TRUE(labels.at(1)->isCut());
    EXPECT_TRUE(labels.at(1)->shownText().contains(QStringLiteral("the-end")));
    EXPECT_LT(notice(std::string(10000, 'a'))->accessibleName().size(), 5000);
}

TEST_F(TerminalNoticeTest, withoutAFolderThereIsNoLineForIt) {
    for (const char* const folder : {"", "\n", " "}) {
        const auto card = notice(folder);
        EXPECT_TRUE(card->findChildren<LineLabel*>().at(1)->isHidden());
        EXPECT_EQ(card->accessibleName().toStdString(), "Couldn't bring the terminal forward");
    }
}

TEST_F(TerminalNoticeTest, isMirroredForRightToLeftText) {
    const auto card = notice("/w/shop");
    render(*card);
    const QRect left = card->findChild<QAbstractButton*>()->geometry();
    const auto mirroredCard = notice("/w/shop");
    mirroredCard->setLayoutDirection(Qt::RightToLeft);
    render(*mirroredCard);
    const QRect right = mirroredCard->findChild<QAbstractButton*>()->geometry();
    EXPECT_EQ(right.left(), card->width() - 1 - left.right());
}

/// The notices among the cards.
class TerminalNoticeInModel : public AppModelTest {
  protected:
    void SetUp() override { platform_.applications.isFound = false; }

    [[nodiscard]] std::vector<const recording::PanelRecord*> notices() const {
        std::vector<const recording::PanelRecord*> result;
        for (const recording::PanelRecord* const panel : platform_.panels.visible()) {
            if (dynamic_cast<const TerminalNotice*>(panel->content.get()) != nullptr) result.push_back(panel);
        }
        return result;
    }
};

TEST_F(TerminalNoticeInModel, aJumpThatFindsNothingShowsItForFourSeconds) {
    dropClaude("Notification", "s");
    pass();
    platform_.announcer.spoken.clear();
    const std::size_t sounds = played().size();
    click("Go to Terminal");
    ASSERT_EQ(visible(), 1U) << "in place of the banner";
    ASSERT_EQ(notices().size(), 1U);
    EXPECT_EQ(notices()[0]->origin, QPoint((1280 - 440) / 2, 30 + 8));
    EXPECT_EQ(platform_.announcer.spoken,
              std::vector<QString>{QStringLiteral("Couldn't bring the terminal forward, /w/shop")});
    EXPECT_EQ(played().size(), sounds) << "it makes no sound";
    platform_.time.advance(milliseconds(3999));
    EXPECT_EQ(notices().size(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(visible(), 0U);
}

TEST_F(TerminalNoticeInModel, theTestAlertHasNoTerminalToMiss) {
    model().sendTestAlert();
    click("Go to Terminal");
    EXPECT_EQ(visible(), 0U);
}

TEST_F(TerminalNoticeInModel, aJumpThatFindsTheTerminalShowsNone) {
    platform_.applications.isFound = true;
    dropClaude("Notification", "s");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(visible(), 0U);
}

TEST_F(TerminalNoticeInModel, aDeferredFailureShowsItThen) {
    platform_.applications.reportsAtOnce = false;
    dropClaude("Notification", "s");
    pass();
    click("Go to Terminal");
    EXPECT_EQ(visible(), 0U);
    platform_.applications.pending.at(0)(false);
    EXPECT_EQ(notices().size(), 1U);
}

TEST_F(TerminalNoticeInModel, thereIsOneAtATimeTheLatestForItsFullTime) {
    model().jump(waitingSession("s", model().now()));
    platform_.time.advance(milliseconds(2500));
    AgentSession other = waitingSession("other", model().now());
    other.cwd = "/w/blog";
    model().jump(other);
    ASSERT_EQ(notices().size(), 1U);
    EXPECT_EQ(notices()[0]->content->accessibleName().toStdString(),
              "Couldn't bring the terminal forward, /w/blog");
    platform_.time.advance(milliseconds(3999));
    EXPECT_EQ(notices().size(), 1U);
    platform_.time.advance(milliseconds(1));
    EXPECT_TRUE(notices().empty());
}

TEST_F(TerminalNoticeInModel, theTimerOfAClosedNoticeDoesNotCloseALaterOne) {
    model().jump(waitingSession("s", model().now()));
    platform_.time.advance(milliseconds(3000));
    click("Close");
    EXPECT_TRUE(notices().empty());
    model().jump(waitingSession("s", model().now()));
    platform_.time.advance(milliseconds(3000));
    EXPECT_EQ(notices().size(), 1U);
}

TEST_F(TerminalNoticeInModel, itTakesNoBannersPlace) {
    for (const char* const session : {"a", "b", "c", "d"})
        dropClaude("Notification", session);
    pass();
    ASSERT_EQ(visible(), 3U);
    model().jump(model().board().sessions().at(0)); // its banner was evicted
    EXPECT_EQ(notices().size(), 1U);
    EXPECT_EQ(visible(), 4U);
    // The next banner evicts the oldest one, not the notice.
    dropClaude("Notification", "e");
    pass();
    EXPECT_EQ(notices().size(), 1U);
    EXPECT_EQ(visible(), 4U);
}

} // namespace
} // namespace corvane
