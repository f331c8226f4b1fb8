#include "App/Support/BannerViewsSupport.h"
#include "App/Support/Waiting.h"
#include "Controls/AgentGlyph.h"
#include "Controls/Buttons.h"
#include "Controls/SecondHand.h"
#include "Style/Tokens.h"

#include <QFontDatabase>
#include <QTest>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::BannerViewsTest;
using test::doneSession;
using test::waitingSession;

/// Counts the paint events of a widget and everything in it, by object.
class PaintCounter : public QObject {
  public:
    explicit PaintCounter(QWidget& root) {
        root.installEventFilter(this);
        for (auto* const child : root.findChildren<QWidget*>())
            child->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++counts[watched];
        return false;
    }

    std::map<QObject*, int> counts;
};

TEST_F(BannerViewsTest, theWaitingBannerHasItsSizeAndTexts) {
    now_ = start + Seconds(42);
    const auto banner = waitingBanner(waitingSession("s", start));
    EXPECT_EQ(banner->size(), QSize(520, 96));
    EXPECT_EQ(texts(*banner), (std::vector<std::string>{"Claude is waiting for you",
                                                        "shop · wants to use Bash", "waiting 0:42"}));
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->text().toStdString(), "Go to Terminal");
    EXPECT_EQ(banner->accessibleName().toStdString(), "Claude is waiting for you, shop · wants to use Bash");
}

TEST_F(BannerViewsTest, theDoneBannerHasItsSizeAndTextsAndOnlyOneButton) {
    const auto banner = doneBanner(doneSession("s", start, AgentKind::codex));
    EXPECT_EQ(banner->size(), QSize(360, 64));
    EXPECT_EQ(texts(*banner), (std::vector<std::string>{"Codex finished", "shop"}));
    EXPECT_EQ(banner->findChildren<QAbstractButton*>().size(), 1);
    EXPECT_EQ(banner->findChild<PlainButton*>()->accessibleName().toStdString(), "Close");
    EXPECT_EQ(banner->findChild<AgentGlyph*>(), nullptr);
}

TEST_F(BannerViewsTest, fontsHaveTheirSizesAndWeights) {
    const auto banner = waitingBanner(waitingSession("s", start));
    const auto labels = banner->findChildren<LineLabel*>();
    EXPECT_EQ(labels[0]->font().pixelSize(), 15);
    EXPECT_EQ(labels[0]->font().weight(), QFont::DemiBold);
    EXPECT_EQ(labels[1]->font().pixelSize(), 13);
    EXPECT_EQ(labels[1]->font().family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    EXPECT_EQ(labels[2]->font().pixelSize(), 11);
    EXPECT_EQ(labels[2]->font().weight(), QFont::Medium);
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->font().pixelSize(), 13);
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->font().weight(), QFont::DemiBold);
    EXPECT_EQ(banner->findChild<PlainButton*>()->font().pixelSize(), 11);
}

TEST_F(BannerViewsTest, buttonsCallBack) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->findChild<PrimaryButton*>()->click();
    for (auto* const button : banner->findChildren<PlainButton*>())
        button->click();
    EXPECT_EQ(calls_, "jump snooze close ");
    calls_.clear();
    doneBanner(doneSession("s", start))->findChild<PlainButton*>()->click();
    EXPECT_EQ(calls_, "close ");
}

TEST_F(BannerViewsTest, theWaitedLineIsEmptyForASessionThatDoesNotWait) {
    const auto banner = waitingBanner(doneSession("s", start));
    EXPECT_EQ(banner->waitedLabel(start + Seconds(5)), QString());
    EXPECT_EQ(texts(*banner).at(2), "");
}

TEST_F(BannerViewsTest, anEmptyWaitedLineKeepsItsPlaceAndNeverTicks) {
    const auto idle = waitingBanner(doneSession("s", start));
    const auto waiting = waitingBanner(waitingSession("s", start));
    idle->show();
    EXPECT_FALSE(SecondHand::instance().isRunning());
    render(*waiting);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(idle->findChildren<LineLabel*>().at(i)->geometry(),
                  waiting->findChildren<LineLabel*>().at(i)->geometry());
    }
    EXPECT_TRUE(inkRect(render(*idle->findChildren<LineLabel*>().at(2)), Qt::black).isEmpty());
}

TEST_F(BannerViewsTest, theWaitedLineIsNeverNegative) {
    const auto banner = waitingBanner(waitingSession("s", start));
    EXPECT_EQ(banner->waitedLabel(start - Seconds(5)).toStdString(), "waiting 0:00");
    EXPECT_EQ(banner->waitedLabel(start + Seconds(3600)).toStdString(), "waiting 1:00:00");
}

TEST_F(BannerViewsTest, onlyTheWaitedLineChangesWithTheClock) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->show();
    SecondHand& hand = SecondHand::instance();
    EXPECT_TRUE(hand.isRunning());
    now_ = start + Seconds(7);
    Q_EMIT hand.ticked();
    EXPECT_EQ(texts(*banner).at(2), "waiting 0:07");
    banner->hide();
    EXPECT_FALSE(hand.isRunning());
    now_ = start + Seconds(9);
    Q_EMIT hand.ticked();
    EXPECT_EQ(texts(*banner).at(2), "waiting 0:07");
}

TEST_F(BannerViewsTest, allClocksTickTogetherUntilTheLastBannerIsDestroyed) {
    auto first = waitingBanner(waitingSession("s", start));
    auto second = waitingBanner(waitingSession("t", start));
    first->show();
    second->show();
    const SecondHand& hand = SecondHand::instance();
    first.reset();
    EXPECT_TRUE(hand.isRunning());
    second->hide();
    second->show();
    EXPECT_TRUE(hand.isRunning());
    second.reset();
    EXPECT_FALSE(hand.isRunning());
}

TEST_F(BannerViewsTest, eachPassUpdatesTheClocksHoweverSoonAfterATick) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->show();
    Q_EMIT SecondHand::instance().ticked();
    now_ = start + Seconds(7);
    SecondHand::instance().beat();
    EXPECT_EQ(texts(*banner).at(2), "waiting 0:07");
}

TEST_F(BannerViewsTest, aTickRepaintsOnlyTheWaitedLine) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->setAttribute(Qt::WA_TranslucentBackground);
    banner->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(banner.get(), test::longestWait));
    QCoreApplication::processEvents();

    PaintCounter counter(*banner);
    now_ = start + Seconds(7);
    Q_EMIT SecondHand::instance().ticked();
    QCoreApplication::processEvents();
    EXPECT_EQ(counter.counts, (std::map<QObject*, int>{{banner->findChildren<LineLabel*>().at(2), 1}}));
}

TEST_F(BannerViewsTest, aVisibleBannerFollowsAChangeOfAppearance) {
    const QPalette before = QApplication::palette();
    QApplication::setPalette(Tokens::palette(ColorScheme::light));
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(banner.get(), test::longestWait));
    QCoreApplication::processEvents();
    EXPECT_EQ(render(*banner).pixelColor(260, 5), Tokens::surface.color(ColorScheme::light));

    PaintCounter counter(*banner);
    QApplication::setPalette(Tokens::palette(ColorScheme::dark));
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.counts[banner.get()] > 0; }, test::longestWait));
    for (auto* const part : banner->findChildren<QWidget*>()) {
        if (!part->isVisible()) continue;
        EXPECT_GE(counter.counts[part], 1) << part->metaObject()->className();
    }
    const QImage image = render(*banner);
    EXPECT_EQ(image.pixelColor(260, 0), Tokens::primary.color(ColorScheme::dark));
    EXPECT_EQ(image.pixelColor(260, 5), Tokens::surface.color(ColorScheme::dark));
    EXPECT_EQ(image.pixelColor(34, 31), Tokens::primary.color(ColorScheme::dark));
    QApplication::setPalette(before);
}

TEST_F(BannerViewsTest, theWaitedLinesBackdropIsTheCardsOwn) {
    for (const bool blurred : {true, false}) {
        const auto banner = waitingBanner(waitingSession("s", start));
        banner->setBlurredBehind(blurred);
        const QImage image = render(*banner);
        const QRect line = banner->findChildren<LineLabel*>().at(2)->geometry();
        EXPECT_EQ(image.pixelColor(line.right(), line.center().y()),
                  image.pixelColor(line.right() + 5, line.center().y()));
    }
}

TEST_F(BannerViewsTest, partsAreAtTheirPlaces) {
    const auto banner = waitingBanner(waitingSession("s", start));
    render(*banner);
    EXPECT_EQ(banner->findChild<AgentGlyph*>()->geometry(), QRect(16, 30, 36, 36));
    const auto labels = banner->findChildren<LineLabel*>();
    const auto* const jump = banner->findChild<PrimaryButton*>();
    EXPECT_EQ(jump->geometry().right() + 1, 520 - 16);
    EXPECT_EQ(jump->height(), 28);
    for (const auto* const label : labels) {
        EXPECT_EQ(label->x(), 16 + 36 + 12);
        EXPECT_EQ(label->geometry().right() + 1, jump->x() - 12 - 8 - 12);
    }
    EXPECT_EQ(labels[1]->y(), labels[0]->geometry().bottom() + 1 + 2);
    EXPECT_EQ(labels[2]->y(), labels[1]->geometry().bottom() + 1 + 2);
    const int above = labels[0]->y();
    const int below = 96 - (labels[2]->geometry().bottom() + 1);
    EXPECT_LE(std::abs(above - below), 1);
}

TEST_F(BannerViewsTest, snoozeAndCrossAreAtTheirPlaces) {
    const auto banner = waitingBanner(waitingSession("s", start));
    render(*banner);
    const auto buttons = banner->findChildren<PlainButton*>();
    const QRect snooze = buttons[0]->contentRect();
    const QRect cross = buttons[1]->contentRect();
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->y(), 24);
    EXPECT_EQ(cross, QRect(493, 58, 14, 14));
    EXPECT_EQ(snooze.right() + 1, 493 - 8);
    EXPECT_EQ(snooze.width(), QFontMetrics(buttons[0]->font()).horizontalAdvance(QStringLiteral("Snooze")));
    EXPECT_LE(std::abs(snooze.center().y() - cross.center().y()), 1);
}

TEST_F(BannerViewsTest, doneBannerPartsAreAtTheirPlaces) {
    const auto banner = doneBanner(doneSession("s", start));
    const QImage image = render(*banner, 2);
    const auto labels = banner->findChildren<LineLabel*>();
    for (const auto* const label : labels) {
        EXPECT_EQ(label->x(), 50);
        EXPECT_EQ(label->geometry().right() + 1, 320);
    }
    EXPECT_EQ(labels[1]->y(), labels[0]->geometry().bottom() + 1 + 2);
    EXPECT_LE(std::abs(labels[0]->y() - (64 - labels[1]->geometry().bottom() - 1)), 1);
    EXPECT_EQ(banner->findChild<PlainButton*>()->contentRect(), QRect(332, 24, 16, 16));
    const QImage leading = image.copy(0, 0, 100, image.height());
    EXPECT_EQ(inkRect(leading, Tokens::secondary.color(ColorScheme::light)), QRect(32, 42, 44, 44));
}

TEST_F(BannerViewsTest, rightToLeftMirrorsTheWholeRow) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->setLayoutDirection(Qt::RightToLeft);
    QResizeEvent resize(banner->size(), QSize());
    QApplication::sendEvent(banner.get(), &resize);
    EXPECT_EQ(banner->findChild<AgentGlyph*>()->geometry(), QRect(520 - 16 - 36, 30, 36, 36));
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->x(), 16);
}

TEST_F(BannerViewsTest, theGlyphNamesTheAgent) {
    const AgentGlyph claude(AgentKind::claude, true, nullptr);
    const AgentGlyph codex(AgentKind::codex, true, nullptr);
    EXPECT_EQ(claude.letter().toStdString(), "C");
    EXPECT_EQ(codex.letter().toStdString(), "X");
    EXPECT_EQ(claude.accessibleName().toStdString(), "Claude");
    EXPECT_EQ(codex.accessibleName().toStdString(), "Codex");
    EXPECT_EQ(claude.size(), QSize(36, 36));
}

TEST_F(BannerViewsTest, theGlyphHasARingOnlyWhileTheAgentWaits) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        AgentGlyph waiting(AgentKind::claude, true, nullptr);
        AgentGlyph idle(AgentKind::claude, false, nullptr);
        waiting.setPalette(Tokens::palette(scheme));
        idle.setPalette(Tokens::palette(scheme));
        EXPECT_EQ(render(waiting).pixelColor(18, 1), Tokens::primary.color(scheme));
        EXPECT_EQ(render(waiting).pixelColor(18, 3), Tokens::surface.color(scheme));
        EXPECT_EQ(render(idle).pixelColor(18, 1), Tokens::surface.color(scheme));
        EXPECT_EQ(idle.size(), waiting.size());
    }
}

TEST_F(BannerViewsTest, onlyTheWaitingBannerHasTheColouredOutline) {
    const auto waiting = waitingBanner(waitingSession("s", start));
    const auto done = doneBanner(doneSession("s", start));
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        for (PanelContent* const banner :
             {static_cast<PanelContent*>(waiting.get()), static_cast<PanelContent*>(done.get())}) {
            banner->setPalette(Tokens::palette(scheme));
        }
        EXPECT_EQ(render(*waiting).pixelColor(260, 0), Tokens::primary.color(scheme));
        EXPECT_NE(render(*done).pixelColor(180, 0), Tokens::primary.color(scheme));
        EXPECT_EQ(render(*waiting).pixelColor(260, 5), Tokens::surface.color(scheme));
        EXPECT_EQ(render(*done).pixelColor(180, 5), Tokens::surface.color(scheme));
        // The desktop is visible at the corners.
        EXPECT_EQ(render(*waiting).pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(render(*done).pixelColor(359, 63).alpha(), 0);
    }
}

TEST_F(BannerViewsTest, theCardIsOpaqueUnlessTheDesktopBlursBehindIt) {
    const auto banner = doneBanner(doneSession("s", start));
    EXPECT_EQ(render(*banner).pixelColor(180, 58).alpha(), 255);
    banner->setBlurredBehind(true);
    EXPECT_EQ(render(*banner).pixelColor(180, 58).alpha(), 209);
}

TEST_F(BannerViewsTest, theBackgroundIsLeftToThePanelsMaterialIfItHasOne) {
    const auto waiting = waitingBanner(waitingSession("s", start));
    waiting->setOnMaterial(true);
    const QImage image = render(*waiting);
    EXPECT_EQ(image.pixelColor(260, 5).alpha(), 0);
    EXPECT_EQ(image.pixelColor(260, 0), Tokens::primary.color(ColorScheme::light)) << "the outline stays";
    const QRect line = waiting->findChildren<LineLabel*>().at(2)->geometry();
    EXPECT_EQ(image.pixelColor(line.right(), line.center().y()).alpha(), 0);
    waiting->setOnMaterial(false);
    EXPECT_EQ(render(*waiting).pixelColor(260, 5).alpha(), 255);
}

TEST_F(BannerViewsTest, symbolsAreDrawnInTheirColour) {
    const auto banner = doneBanner(doneSession("s", start));
    // The disc's left part, beside the check mark, and the card around it.
    EXPECT_EQ(render(*banner).pixelColor(18, 32), Tokens::secondary.color(ColorScheme::light));
    EXPECT_EQ(render(*banner).pixelColor(13, 32), Tokens::surface.color(ColorScheme::light));
    EXPECT_EQ(render(*banner, 2).pixelColor(36, 64), Tokens::secondary.color(ColorScheme::light));
}

} // namespace
} // namespace corvane
