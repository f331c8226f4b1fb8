#include "BannerViews.h"
#include "Buttons.h"
#include "Labels.h"
#include "Sessions.h"
#include "Tokens.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

using test::doneSession;
using test::waitingSession;

const Date start{1'790'000'000, 0};

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

class BannerViewsTest : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<WaitingBanner> waitingBanner(const AgentSession& session) {
        return std::make_unique<WaitingBanner>(
            session, [this] { return now_; }, [this] { calls_ += "jump "; }, [this] { calls_ += "snooze "; },
            [this] { calls_ += "close "; });
    }
    [[nodiscard]] std::unique_ptr<DoneBanner> doneBanner(const AgentSession& session) {
        return std::make_unique<DoneBanner>(session, [this] { calls_ += "close "; });
    }

    static std::vector<std::string> texts(const QWidget& banner) {
        std::vector<std::string> result;
        for (const auto* const label : banner.findChildren<LineLabel*>())
            result.push_back(label->text().toStdString());
        return result;
    }

    static QImage render(QWidget& widget, qreal ratio = 1) {
        QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    /// The smallest rectangle, in device pixels, around all pixels that are nearly `ink`.
    static QRect inkRect(const QImage& image, const QColor& ink) {
        QRect result;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                constexpr int tolerance = 100; // for edges that are covered in part
                if (std::abs(color.red() - ink.red()) < tolerance &&
                    std::abs(color.green() - ink.green()) < tolerance &&
                    std::abs(color.blue() - ink.blue()) < tolerance && color.alpha() > tolerance) {
                    result |= QRect(x, y, 1, 1);
                }
            }
        }
        return result;
    }

    Date now_ = start;
    std::string calls_;
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
    EXPECT_FALSE(idle->findChild<QTimer*>()->isActive());
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

TEST_F(BannerViewsTest, onlyTheWaitedLineMovesWithTheClock) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->show();
    auto* const second = banner->findChild<QTimer*>();
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->isActive());
    EXPECT_EQ(second->interval(), 1000);
    now_ = start + Seconds(7);
    QTimerEvent tick(second->timerId());
    QCoreApplication::sendEvent(second, &tick);
    EXPECT_EQ(texts(*banner).at(2), "waiting 0:07");
    banner->hide();
    EXPECT_FALSE(second->isActive());
}

TEST_F(BannerViewsTest, aTickRepaintsNothingButTheWaitedLine) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->setAttribute(Qt::WA_TranslucentBackground);
    banner->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(banner.get()));
    QCoreApplication::processEvents();

    PaintCounter counter(*banner);
    now_ = start + Seconds(7);
    auto* const second = banner->findChild<QTimer*>();
    QTimerEvent tick(second->timerId());
    QCoreApplication::sendEvent(second, &tick);
    QCoreApplication::processEvents();
    EXPECT_EQ(counter.counts, (std::map<QObject*, int>{{banner->findChildren<LineLabel*>().at(2), 1}}));
}

TEST_F(BannerViewsTest, aStandingBannerFollowsASwitchOfAppearance) {
    const QPalette before = QApplication::palette();
    QApplication::setPalette(Tokens::palette(ColorScheme::light));
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->setBlended(false);
    banner->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(banner.get()));
    QCoreApplication::processEvents();
    EXPECT_EQ(render(*banner).pixelColor(260, 5), Tokens::surface.color(ColorScheme::light));

    PaintCounter counter(*banner);
    QApplication::setPalette(Tokens::palette(ColorScheme::dark));
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.counts[banner.get()] > 0; }));
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
    for (const bool blended : {true, false}) {
        const auto banner = waitingBanner(waitingSession("s", start));
        banner->setBlended(blended);
        const QImage image = render(*banner);
        const QRect line = banner->findChildren<LineLabel*>().at(2)->geometry();
        EXPECT_EQ(image.pixelColor(line.right(), line.center().y()),
                  image.pixelColor(line.right() + 5, line.center().y()));
    }
}

TEST_F(BannerViewsTest, partsStandWhereTheyBelong) {
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

TEST_F(BannerViewsTest, snoozeAndCrossStandWhereTheyBelong) {
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

TEST_F(BannerViewsTest, doneBannerPartsStandWhereTheyBelong) {
    const auto banner = doneBanner(doneSession("s", start));
    banner->setBlended(false);
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

TEST_F(BannerViewsTest, theMainButtonsSymbolAndTextStandAtTenSixAndTwelve) {
    PrimaryButton button(QStringLiteral("HH"), QStringLiteral("terminal"), nullptr);
    const QFontMetricsF metrics(button.font());
    EXPECT_EQ(
        button.sizeHint(),
        QSize(10 + 16 + 6 + QFontMetrics(button.font()).horizontalAdvance(QStringLiteral("HH")) + 12, 28));
    button.resize(button.sizeHint());
    constexpr int ratio = 4;
    const QImage image = render(button, ratio);
    const QColor ink = Tokens::onPrimary.color(ColorScheme::light);
    const auto part = [&](int left, int right) {
        return inkRect(image.copy(left * ratio, 0, (right - left) * ratio, image.height()), ink)
            .translated(left * ratio, 0);
    };
    // The symbol's box is 16 wide, its ink stands in the middle of it.
    const QRect symbol = part(0, 29);
    EXPECT_NEAR(symbol.left() + symbol.right() + 1, 2 * 18 * ratio, 1);
    EXPECT_NEAR(symbol.top() + symbol.bottom() + 1, 2 * 14 * ratio, 1);
    EXPECT_NEAR(symbol.width(), 13.5 * ratio, 2);
    const QRect text = part(29, button.width());
    EXPECT_NEAR(text.left(), (32 + metrics.leftBearing(QLatin1Char('H'))) * ratio, 3);
    EXPECT_NEAR(text.right() + 1, (button.width() - 12 - metrics.rightBearing(QLatin1Char('H'))) * ratio, 5);
}

TEST_F(BannerViewsTest, rightToLeftMirrorsTheWholeRow) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->setLayoutDirection(Qt::RightToLeft);
    QResizeEvent resize(banner->size(), QSize());
    QApplication::sendEvent(banner.get(), &resize);
    EXPECT_EQ(banner->findChild<AgentGlyph*>()->geometry(), QRect(520 - 16 - 36, 30, 36, 36));
    EXPECT_EQ(banner->findChild<PrimaryButton*>()->x(), 16);
}

TEST_F(BannerViewsTest, aLongSubtitleLosesItsMiddleAndKeepsItsName) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/a-project-with-quite-a-long-name-for-a-folder-somewhere-deep";
    session.message = "Claude needs your permission to use mcp__a_server_with_a_long_name__and_a_tool";
    const auto banner = waitingBanner(session);
    render(*banner);
    const auto* const subtitle = banner->findChildren<LineLabel*>().at(1);
    const std::string shown = subtitle->shownText().toStdString();
    EXPECT_TRUE(shown.starts_with("a-proj")) << shown;
    EXPECT_TRUE(shown.ends_with("tool")) << shown;
    EXPECT_NE(shown.find("…"), std::string::npos);
    EXPECT_TRUE(subtitle->text().endsWith(QStringLiteral("and_a_tool")));
    EXPECT_LE(QFontMetricsF(subtitle->font()).horizontalAdvance(subtitle->shownText()), subtitle->width());
}

TEST_F(BannerViewsTest, aLongTitleAndADoneSubtitleLoseTheirMiddle) {
    const auto waiting = waitingBanner(waitingSession("s", start));
    render(*waiting);
    // No agent's name is that long: letters so large that the title does not fit.
    auto* const title = waiting->findChildren<LineLabel*>().at(0);
    ASSERT_EQ(title->shownText(), title->text());
    QFont large = title->font();
    large.setPixelSize(40);
    title->setFont(large);
    AgentSession session = doneSession("s", start);
    session.cwd = "/w/a-project-with-quite-a-long-name-for-a-folder-somewhere-deep";
    const auto done = doneBanner(session);
    render(*done);
    const auto* const subtitle = done->findChildren<LineLabel*>().at(1);

    for (const LineLabel* const label : {static_cast<const LineLabel*>(title), subtitle}) {
        const QString shown = label->shownText();
        EXPECT_TRUE(shown.contains(QStringLiteral("…"))) << shown.toStdString();
        EXPECT_EQ(shown.left(3), label->text().left(3));
        EXPECT_EQ(shown.right(3), label->text().right(3));
        EXPECT_LE(QFontMetricsF(label->font()).horizontalAdvance(shown), label->width());
    }
}

using Spans = std::vector<std::pair<int, int>>;

/// From where to where each word reaches in a picture of a line of text.
Spans words(const QImage& line) {
    constexpr int widestGap = 4; // between letters; a space is wider
    Spans result;
    for (int x = 0; x < line.width(); ++x) {
        bool hasInk = false;
        for (int y = 0; y < line.height(); ++y)
            hasInk = hasInk || line.pixelColor(x, y).alpha() > 60;
        if (!hasInk) continue;
        if (result.empty() || x - result.back().second > widestGap) result.emplace_back(x, x);
        result.back().second = x;
    }
    return result;
}

TEST_F(BannerViewsTest, aSubtitleReadsInItsFirstStrongDirection) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/متجر";
    const auto banner = waitingBanner(session);
    render(*banner);
    auto* const subtitle = banner->findChildren<LineLabel*>().at(1);
    ASSERT_EQ(subtitle->text().toStdString(), "متجر · wants to use Bash");

    // The name comes first for who reads from right to left: the message stands to its left, and the line
    // begins at the left edge of the text all the same.
    LineLabel message(QStringLiteral("wants to use Bash"), subtitle->font(), LineLabel::Emphasis::normal,
                      LineLabel::Truncation::none, nullptr);
    message.resize(message.sizeHint().width(), subtitle->height());
    const Spans expected = words(render(message));
    ASSERT_EQ(expected.size(), 4U);
    const Spans seen = words(render(*subtitle));
    ASSERT_GT(seen.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(seen[i].first, expected[i].first, 1) << i;
        EXPECT_NEAR(seen[i].second, expected[i].second, 1) << i;
    }
}

TEST_F(BannerViewsTest, aVeryLongMessageStaysCheap) {
    // The alert's text is cut after so many characters, but a single one of them can have any length, and so
    // can a folder's name.
    std::string marks = "e";
    for (int i = 0; i < 100'000; ++i)
        marks += "\u0301";
    AgentSession ofMarks = waitingSession("s", start);
    ofMarks.message = marks;
    AgentSession ofName = waitingSession("s", start);
    ofName.cwd = "/w/" + std::string(100'000, 'x') + "end";
    ofName.message.clear();
    for (const AgentSession& session : {ofMarks, ofName}) {
        const auto banner = waitingBanner(session);
        EXPECT_EQ(banner->accessibleName().size(), 4096);
        EXPECT_TRUE(banner->accessibleName().startsWith(QStringLiteral("Claude is waiting for you, ")));
        // Its length is never measured for the layout.
        EXPECT_EQ(banner->findChildren<LineLabel*>().at(1)->sizeHint().width(), 0);
    }
    const auto banner = waitingBanner(ofName);
    render(*banner);
    const QString shown = banner->findChildren<LineLabel*>().at(1)->shownText();
    EXPECT_TRUE(shown.startsWith(u'x') && shown.endsWith(QStringLiteral("xend"))) << shown.toStdString();
}

TEST_F(BannerViewsTest, anAccessibleNameIsNeverCutWithinACharacterBeyondTheBasicPlane) {
    for (const int padding : {0, 1}) {
        AgentSession session = waitingSession("s", start);
        session.cwd = "/w/" + std::string(static_cast<std::size_t>(padding), 'x');
        for (int i = 0; i < 4096; ++i)
            session.cwd += "😀";
        const QString name = waitingBanner(session)->accessibleName();
        EXPECT_TRUE(name.isValidUtf16());
        EXPECT_LE(name.size(), 4096);
        EXPECT_GE(name.size(), 4095);
    }
}

TEST_F(BannerViewsTest, aLineBreakInAProjectsNameStaysOnTheLine) {
    AgentSession session = doneSession("s", start);
    session.cwd = "/w/two\nlines";
    const auto banner = doneBanner(session);
    render(*banner);
    EXPECT_EQ(banner->findChildren<LineLabel*>().at(1)->shownText().toStdString(), "two lines");
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

TEST_F(BannerViewsTest, theGlyphsRingIsThereOnlyWhileTheAgentWaits) {
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
            banner->setBlended(false);
        }
        EXPECT_EQ(render(*waiting).pixelColor(260, 0), Tokens::primary.color(scheme));
        EXPECT_NE(render(*done).pixelColor(180, 0), Tokens::primary.color(scheme));
        EXPECT_EQ(render(*waiting).pixelColor(260, 5), Tokens::surface.color(scheme));
        EXPECT_EQ(render(*done).pixelColor(180, 5), Tokens::surface.color(scheme));
        // The corners let the desktop show.
        EXPECT_EQ(render(*waiting).pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(render(*done).pixelColor(359, 63).alpha(), 0);
    }
}

TEST_F(BannerViewsTest, theCardIsOpaqueUnlessTheDesktopBlendsIt) {
    const auto banner = doneBanner(doneSession("s", start));
    EXPECT_EQ(render(*banner).pixelColor(180, 58).alpha(), 245);
    banner->setBlended(false);
    EXPECT_EQ(render(*banner).pixelColor(180, 58).alpha(), 255);
}

TEST_F(BannerViewsTest, primaryButtonFadesWhenPressedOrDisabled) {
    PrimaryButton button(QStringLiteral("Go"), {}, nullptr);
    button.resize(button.sizeHint());
    EXPECT_EQ(button.opacity(), 1.0);
    EXPECT_NEAR(render(button).pixelColor(3, 14).alpha(), 255, 0);
    button.setDown(true);
    EXPECT_EQ(button.opacity(), 0.8);
    EXPECT_NEAR(render(button).pixelColor(3, 14).alpha(), 204, 1);
    button.setEnabled(false);
    EXPECT_EQ(button.opacity(), 0.45);
    EXPECT_NEAR(render(button).pixelColor(3, 14).alpha(), 115, 1);
}

TEST_F(BannerViewsTest, theWholePillTakesClicksAndItsCornersDoNot) {
    PrimaryButton button(QStringLiteral("Go to Terminal"), QStringLiteral("terminal"), nullptr);
    button.resize(button.sizeHint());
    EXPECT_EQ(button.height(), 28);
    const QSignalSpy clicks(&button, &QAbstractButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(2, 14));
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(button.width() / 2, 1));
    EXPECT_EQ(clicks.count(), 2);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(0, 27));
    EXPECT_EQ(clicks.count(), 2);
}

TEST_F(BannerViewsTest, smallButtonsTakeClicksAroundWhatTheyDraw) {
    const auto banner = doneBanner(doneSession("s", start));
    auto* const close = banner->findChild<PlainButton*>();
    EXPECT_GE(close->width(), 24);
    EXPECT_GE(close->height(), 24);
    QTest::mouseClick(close, Qt::LeftButton, {}, QPoint(1, 1));
    EXPECT_EQ(calls_, "close ");
}

TEST_F(BannerViewsTest, theMainButtonTakesItsHoverColourUnderThePointerAndPressed) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        PrimaryButton button(QStringLiteral("Go"), {}, nullptr);
        button.setPalette(Tokens::palette(scheme));
        button.resize(button.sizeHint());
        const auto fill = [&] { return render(button).pixelColor(3, 14); };
        EXPECT_EQ(fill(), Tokens::primary.color(scheme));
        button.setAttribute(Qt::WA_UnderMouse);
        EXPECT_EQ(fill(), Tokens::primaryHover(scheme));
        button.setAttribute(Qt::WA_UnderMouse, false);
        button.setDown(true);
        EXPECT_NEAR(fill().alpha(), 204, 1);
        EXPECT_NEAR(fill().red(), Tokens::primaryHover(scheme).red(), 1);
        EXPECT_NEAR(fill().green(), Tokens::primaryHover(scheme).green(), 1);
        EXPECT_NEAR(fill().blue(), Tokens::primaryHover(scheme).blue(), 1);
        button.setAttribute(Qt::WA_UnderMouse);
        button.setDown(false);
        button.setEnabled(false);
        EXPECT_NEAR(fill().red(), Tokens::primary.color(scheme).red(), 1);
    }
}

/// The most opaque colour of a picture.
QColor deepestColor(const QImage& image) {
    QColor deepest(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > deepest.alpha()) deepest = image.pixelColor(x, y);
        }
    }
    return deepest;
}

TEST_F(BannerViewsTest, plainButtonsShowRestHoverPressedDisabled) {
    constexpr int ratio = 4; // so that some pixels are covered by ink in full
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        const std::unique_ptr<PlainButton> text(PlainButton::withText(QStringLiteral("Snooze"), 11, nullptr));
        const std::unique_ptr<PlainButton> symbol(
            PlainButton::withSymbol(QStringLiteral("xmark"), 16, QStringLiteral("Close"), nullptr));
        for (PlainButton* const button : {text.get(), symbol.get()}) {
            button->setPalette(Tokens::palette(scheme));
            button->resize(button->sizeHint());
            // Where the pill is and no ink.
            const QPoint onPill(button->width() / 2 * ratio, 3 * ratio);
            const auto inkSeen = [&](const QColor& ink) {
                const QImage image = render(*button, ratio);
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        if (image.pixelColor(x, y) == ink) return true;
                    }
                }
                return false;
            };
            EXPECT_EQ(render(*button, ratio).pixelColor(onPill).alpha(), 0);
            EXPECT_EQ(deepestColor(render(*button, ratio)), Tokens::textSecondary(scheme));

            button->setAttribute(Qt::WA_UnderMouse);
            EXPECT_EQ(render(*button, ratio).pixelColor(onPill), Tokens::hoverFill(scheme));
            EXPECT_TRUE(inkSeen(Tokens::onSurface.color(scheme)));
            button->setDown(true);
            EXPECT_EQ(render(*button, ratio).pixelColor(onPill), Tokens::pressedFill(scheme));
            EXPECT_TRUE(inkSeen(Tokens::onSurface.color(scheme)));
            EXPECT_EQ(render(*button, ratio).pixelColor(0, 0).alpha(), 0) << "the pill's corner";

            button->setDown(false);
            button->setEnabled(false);
            EXPECT_EQ(render(*button, ratio).pixelColor(onPill).alpha(), 0);
            EXPECT_NEAR(deepestColor(render(*button, ratio)).alpha(), 0.45 * 255, 1);
        }
    }
}

TEST_F(BannerViewsTest, snoozeTakesClicksOnTwentyFourPixelsAndKeepsItsPill) {
    const auto banner = waitingBanner(waitingSession("s", start));
    render(*banner);
    auto* const snooze = banner->findChildren<PlainButton*>().at(0);
    EXPECT_GE(snooze->height(), 24);
    EXPECT_GE(snooze->width(), 24);
    // Neither of its neighbours loses any of its own.
    EXPECT_FALSE(snooze->geometry().intersects(banner->findChild<PrimaryButton*>()->geometry()));
    QTest::mouseClick(snooze, Qt::LeftButton, {}, QPoint(snooze->width() / 2, 0));
    QTest::mouseClick(snooze, Qt::LeftButton, {}, QPoint(snooze->width() / 2, snooze->height() - 1));
    EXPECT_EQ(calls_, "snooze snooze ");

    snooze->setAttribute(Qt::WA_UnderMouse);
    const QRect pill = inkRect(render(*snooze), Tokens::hoverFill(ColorScheme::light));
    EXPECT_EQ(pill.translated(snooze->pos()), snooze->contentRect().adjusted(-6, -4, 6, 4));
}

TEST_F(BannerViewsTest, symbolsAreDrawnInTheirColour) {
    const auto banner = doneBanner(doneSession("s", start));
    banner->setBlended(false);
    // The disc's left part, beside the check mark, and the card around it.
    EXPECT_EQ(render(*banner).pixelColor(18, 32), Tokens::secondary.color(ColorScheme::light));
    EXPECT_EQ(render(*banner).pixelColor(13, 32), Tokens::surface.color(ColorScheme::light));
    EXPECT_EQ(render(*banner, 2).pixelColor(36, 64), Tokens::secondary.color(ColorScheme::light));
}

} // namespace
} // namespace corvane
