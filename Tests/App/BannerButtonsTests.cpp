#include "App/Support/BannerViewsSupport.h"
#include "Controls/Buttons.h"
#include "Style/Tokens.h"

#include <QFontMetricsF>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace corvane {
namespace {

using test::BannerViewsTest;
using test::doneSession;
using test::waitingSession;

TEST_F(BannerViewsTest, theMainButtonsSymbolAndTextAreAtTenSixAndTwelve) {
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
    // The symbol's box is 16 wide, with the symbol centred in it.
    const QRect symbol = part(0, 29);
    EXPECT_NEAR(symbol.left() + symbol.right() + 1, 2 * 18 * ratio, 1);
    EXPECT_NEAR(symbol.top() + symbol.bottom() + 1, 2 * 14 * ratio, 1);
    EXPECT_NEAR(symbol.width(), 13.5 * ratio, 2);
    const QRect text = part(29, button.width());
    EXPECT_NEAR(text.left(), (32 + metrics.leftBearing(QLatin1Char('H'))) * ratio, 3);
    EXPECT_NEAR(text.right() + 1, (button.width() - 12 - metrics.rightBearing(QLatin1Char('H'))) * ratio, 5);
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
    constexpr int ratio = 4; // so that some pixels are fully covered
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        const std::unique_ptr<PlainButton> text(PlainButton::withText(QStringLiteral("Snooze"), 11, nullptr));
        const std::unique_ptr<PlainButton> symbol(
            PlainButton::withSymbol(QStringLiteral("xmark"), 16, QStringLiteral("Close"), nullptr));
        for (PlainButton* const button : {text.get(), symbol.get()}) {
            button->setPalette(Tokens::palette(scheme));
            button->resize(button->sizeHint());
            // A point on the pill beside the text.
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
    // Its neighbours lose none of theirs.
    EXPECT_FALSE(snooze->geometry().intersects(banner->findChild<PrimaryButton*>()->geometry()));
    QTest::mouseClick(snooze, Qt::LeftButton, {}, QPoint(snooze->width() / 2, 0));
    QTest::mouseClick(snooze, Qt::LeftButton, {}, QPoint(snooze->width() / 2, snooze->height() - 1));
    EXPECT_EQ(calls_, "snooze snooze ");

    snooze->setAttribute(Qt::WA_UnderMouse);
    const QRect pill = inkRect(render(*snooze), Tokens::hoverFill(ColorScheme::light));
    EXPECT_EQ(pill.translated(snooze->pos()), snooze->contentRect().adjusted(-6, -4, 6, 4));
}

} // namespace
} // namespace corvane
