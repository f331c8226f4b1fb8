#include "Platform/Linux/BannerPanel.h"
#include "Platform/Linux/Shadow.h"

#include <QAnimationDriver>
#include <QApplication>
#include <QPointer>
#include <QWindow>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace corvane {
namespace {

using std::chrono::milliseconds;

/// Advances animations manually, instead of the real clock.
class HandDrivenAnimations : public QAnimationDriver {
  public:
    HandDrivenAnimations() { install(); }
    ~HandDrivenAnimations() override { uninstall(); }

    void pass(int count) {
        // A new animation is registered by the event loop, in two iterations, and counts from the next step.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        advance();
        time_ += count;
        advance();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] qint64 elapsed() const override { return time_; }

  protected:
    void start() override {
        time_ = 0; // counts from here
        QAnimationDriver::start();
    }

  private:
    qint64 time_ = 0;
};

class PlainCard : public PanelContent {
  public:
    [[nodiscard]] QPainterPath outline() const override {
        QPainterPath path;
        path.addRect(rect());
        return path;
    }
};

class EventCounter : public QObject {
  public:
    explicit EventCounter(QObject& watched, QEvent::Type type)
        : type_(type) {
        watched.installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == type_) ++count;
        return false;
    }

    int count = 0;

  private:
    QEvent::Type type_;
};

class LinuxBannerPanelTest : public testing::Test {
  protected:
    LinuxBannerPanelTest() {
        auto card = std::make_unique<PlainCard>();
        card_ = card.get();
        panel_->setContent(std::move(card), QSize(360, 64));
        panel_->setOrigin(place);
    }

    [[nodiscard]] QWidget& window() const { return *card_->window(); }
    [[nodiscard]] double opacity() const { return window().windowHandle()->opacity(); }
    /// Where the card is on the screen.
    [[nodiscard]] QPoint cardPlace() const {
        return window().pos() + QPoint(shadowMargins.left(), shadowMargins.top());
    }

    static constexpr QPoint place{200, 100};

    HandDrivenAnimations animations_;
    PanelDamage damage_;
    LinuxBannerPanels panels_{damage_};
    std::unique_ptr<BannerPanel> panel_ = panels_.make();
    QPointer<PlainCard> card_;
};

TEST_F(LinuxBannerPanelTest, hasTheFlagsOfAPanel) {
    const Qt::WindowFlags flags = window().windowFlags();
    EXPECT_EQ(flags & Qt::WindowType_Mask, Qt::Tool);
    for (const Qt::WindowType flag :
         {Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint, Qt::WindowDoesNotAcceptFocus,
          Qt::NoDropShadowWindowHint, Qt::X11BypassWindowManagerHint}) {
        EXPECT_TRUE(flags.testFlag(flag)) << flag;
    }
    EXPECT_TRUE(window().testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(window().testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_FALSE(window().testAttribute(Qt::WA_QuitOnClose));
    EXPECT_FALSE(window().isVisible());

    panel_->fadeIn(milliseconds(220), 12);
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(QApplication::activeWindow(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
}

TEST_F(LinuxBannerPanelTest, hasRoomForTheShadowAroundTheCard) {
    EXPECT_EQ(panel_->size(), QSize(360, 64));
    EXPECT_EQ(card_->size(), QSize(360, 64));
    EXPECT_EQ(window().size(), QSize(360 + 48, 64 + 48));
    EXPECT_EQ(card_->pos(), QPoint(24, 16));
    EXPECT_EQ(cardPlace(), place);
}

TEST_F(LinuxBannerPanelTest, aSlideIsAnOffsetFromAPlaceThatMayMoveMeanwhile) {
    panel_->fadeIn(milliseconds(220), 12);
    EXPECT_EQ(cardPlace(), place - QPoint(0, 12));
    animations_.pass(60);
    const QPoint offset = cardPlace() - place;
    EXPECT_EQ(offset.x(), 0);
    EXPECT_LT(offset.y(), 0);
    EXPECT_GT(offset.y(), -12);

    const QPoint next(320, 204);
    panel_->setOrigin(next);
    EXPECT_EQ(cardPlace(), next + offset);
    animations_.pass(160);
    EXPECT_EQ(cardPlace(), next);
    EXPECT_EQ(opacity(), 1.0);
}

TEST_F(LinuxBannerPanelTest, opacityFollowsOutQuadAndTheSlideOutCubic) {
    constexpr int slide = 240; // far more than a banner's, for fine steps
    panel_->fadeIn(milliseconds(220), slide);
    EXPECT_EQ(opacity(), 0.0);
    EXPECT_EQ(cardPlace().y(), place.y() - slide);
    for (int time = 10; time <= 220; time += 10) {
        animations_.pass(10);
        const double left = 1 - time / 220.0;
        EXPECT_NEAR(opacity(), 1 - left * left, 1e-6) << time;
        EXPECT_NEAR(cardPlace().y(), place.y() - slide * left * left * left, 0.5 + 1e-6) << time;
    }

    panel_->fadeOut(milliseconds(180));
    for (int time = 10; time <= 180; time += 10) {
        animations_.pass(10);
        const double left = 1 - time / 180.0;
        EXPECT_NEAR(opacity(), left * left, 1e-6) << time;
        EXPECT_EQ(cardPlace(), place);
    }
}

TEST_F(LinuxBannerPanelTest, aFadeOutDuringTheFadeInNeverLosesOpacityAtOnce) {
    std::vector<double> seen;
    QObject::connect(window().windowHandle(), &QWindow::opacityChanged,
                     [&](qreal value) { seen.push_back(value); });
    panel_->fadeIn(milliseconds(220), 12);
    for (int time = 0; time < 60; time += 5)
        animations_.pass(5);
    const QPoint before = cardPlace();
    const double most = opacity();
    ASSERT_GT(most, 0.3);
    ASSERT_LT(most, 0.8);
    ASSERT_TRUE(std::is_sorted(seen.begin(), seen.end()));

    seen.assign(1, most);
    panel_->fadeOut(milliseconds(180));
    for (int time = 0; time < 200; time += 5)
        animations_.pass(5);
    EXPECT_GE(seen.size(), 30U);
    EXPECT_EQ(seen.back(), 0.0);
    // The fade's first step is the largest: twice the average.
    const double largestStep = 2 * most * 5 / 180;
    for (std::size_t i = 1; i < seen.size(); ++i) {
        EXPECT_LE(seen[i], seen[i - 1]) << i;
        EXPECT_LE(seen[i - 1] - seen[i], largestStep) << i;
    }
    EXPECT_EQ(cardPlace(), before);
}

TEST_F(LinuxBannerPanelTest, aFadedPanelIsHiddenOnlyByOrderOut) {
    panel_->fadeIn(milliseconds(220), 12);
    animations_.pass(220);
    panel_->fadeOut(milliseconds(180));
    animations_.pass(1000);
    EXPECT_EQ(opacity(), 0.0);
    EXPECT_TRUE(window().isVisible());
    panel_->orderOut();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(LinuxBannerPanelTest, aHiddenPanelStaysHiddenWhenItFadesOrIsRaised) {
    panel_->fadeOut(milliseconds(180));
    panel_->orderFront();
    animations_.pass(200);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(LinuxBannerPanelTest, newContentReplacesTheViewWithoutHidingTheWindow) {
    panel_->fadeIn(milliseconds(220), 12);
    animations_.pass(220);
    QWidget& window = this->window();
    const EventCounter hidings(window, QEvent::Hide);
    const QPointer<PlainCard> old = card_;
    auto card = std::make_unique<PlainCard>();
    card_ = card.get();
    panel_->setContent(std::move(card), QSize(520, 96));

    EXPECT_EQ(&this->window(), &window);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(opacity(), 1.0);
    EXPECT_TRUE(card_->isVisible());
    EXPECT_EQ(panel_->size(), QSize(520, 96));
    EXPECT_EQ(window.size(), QSize(520 + 48, 96 + 48));
    EXPECT_EQ(cardPlace(), place);
    // The old view may be in the middle of one of its handlers.
    ASSERT_NE(old, nullptr);
    EXPECT_FALSE(old->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(old, nullptr);
    EXPECT_EQ(hidings.count, 0);
}

} // namespace
} // namespace corvane
