#include "App/Support/Pictures.h"
#include "App/Support/PopupStates.h"
#include "Controls/PopupCards.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

namespace corvane {
namespace {

class PopupCardsTest : public testing::Test {
  protected:
    PopupCardsTest() {
        menu_.addAction(QStringLiteral("Settings…"));
        menu_.addAction(QStringLiteral("Quit"));
        window_.setGeometry(200, 200, 300, 400);
    }

    /// Where the popup's card is on the desktop.
    static QRect cardOf(const QWidget& popup) {
        return PopupCards::card(popup).translated(popup.geometry().topLeft());
    }
    [[nodiscard]] QMargins room() const { return shadow_.margins(); }

    Picker& picker(int current = 0) {
        auto* const picker =
            new Picker(QStringLiteral("Sound"),
                       {QStringLiteral("Glass"), QStringLiteral("Ping"), QStringLiteral("Hero")}, &window_);
        picker->setGeometry(QRect(QPoint(40, 150), picker->sizeHint()));
        picker->setCurrentIndex(current);
        window_.show();
        picker->show();
        return *picker;
    }

    test::ApplicationStyle style_;
    recording::FakeWindowShadow shadow_;
    PopupCards cards_{shadow_};
    QWidget window_;
    QMenu menu_;
};

TEST_F(PopupCardsTest, aMenuHasMarginsForItsShadowAndItsCardAtTheMenusPlace) {
    menu_.popup({200, 100});
    EXPECT_EQ(menu_.contentsMargins(), room());
    EXPECT_EQ(cardOf(menu_).topLeft(), QPoint(200, 100));
    const int widest = QFontMetrics(menu_.font()).horizontalAdvance(QStringLiteral("Settings…"));
    EXPECT_EQ(cardOf(menu_).width(), 2 * 4 + 2 * 8 + widest) << "no gutter";
    shadow_.painted.clear();
    (void)menu_.grab();
    ASSERT_FALSE(shadow_.painted.empty());
    EXPECT_EQ(shadow_.painted[0].boundingRect().toAlignedRect().size(), cardOf(menu_).size());
    EXPECT_TRUE(shadow_.lastCut.isEmpty());
}

TEST_F(PopupCardsTest, aMenuIsTranslucentOverABlurOfItsShapeOnlyWhereTheDesktopBlurs) {
    const auto fill = [this] {
        const QRect card = PopupCards::card(menu_);
        QImage image(menu_.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        menu_.render(&image);
        return image.pixelColor(card.topLeft() + QPoint(card.width() / 2, 2)).alpha();
    };
    menu_.popup({200, 100});
    EXPECT_EQ(fill(), 255);
    EXPECT_TRUE(shadow_.behind.isEmpty());
    menu_.close();
    shadow_.blurred = true;
    menu_.popup({200, 100});
    EXPECT_EQ(fill(), 209);
    EXPECT_EQ(shadow_.behind.boundingRect().toAlignedRect(), PopupCards::card(menu_));
}

TEST(CardAtEdge, isAtTheEdgeToWhichQtHasMovedItsWindow) {
    const QRect screen(0, 0, 1440, 900);
    const QSize card(273, 166);
    const QSize window = card.grownBy({24, 16, 24, 32});
    const auto place = [&](QPoint corner, const QRect& workArea) {
        return cardAtEdge(card, {corner, window}, screen, workArea);
    };
    const QRect belowBar = screen.adjusted(0, 28, 0, 0);
    EXPECT_EQ(place({600, 28}, belowBar).topLeft(), QPoint(600, 28));
    EXPECT_EQ(place({1440 - window.width(), 28}, belowBar).right(), 1439);
    const QRect aboveBar = screen.adjusted(0, 0, 0, -28);
    EXPECT_EQ(place({600, 872 - window.height()}, aboveBar), QRect(QPoint(600, 872 - 166), card));
    EXPECT_EQ(place({600, 900 - window.height()}, screen).bottom(), 899);
    const QRect leftOfBar = screen.adjusted(0, 0, -40, 0);
    EXPECT_EQ(place({1400 - window.width(), 300}, leftOfBar), QRect(QPoint(1400 - 273, 300), card));
    EXPECT_EQ(place({600, 300}, aboveBar).topLeft(), QPoint(600, 300));
}

TEST_F(PopupCardsTest, aMenuStaysOnTheScreen) {
    const QRect screen = menu_.screen()->geometry();
    menu_.popup(screen.bottomRight());
    EXPECT_TRUE(screen.contains(cardOf(menu_)));
    EXPECT_EQ(cardOf(menu_).right(), screen.right());
    menu_.close();
    menu_.popup(screen.topLeft());
    EXPECT_EQ(cardOf(menu_).topLeft(), screen.topLeft());
}

TEST_F(PopupCardsTest, aMenuOfAMenuBarOpensBelowItsTitle) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QWidget window;
        window.setLayoutDirection(direction);
        window.setGeometry(200, 200, 300, 100);
        QMenuBar bar(&window);
        bar.addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Quit"));
        QMenu& menu = *bar.addMenu(QStringLiteral("Window"));
        menu.addAction(QStringLiteral("A rather long entry"));
        bar.resize(300, bar.sizeHint().height());
        window.show();
        bar.setActiveAction(menu.menuAction());
        ASSERT_TRUE(menu.isVisible());
        const QRect title = bar.actionGeometry(menu.menuAction()).translated(bar.mapToGlobal(QPoint()));
        EXPECT_EQ(cardOf(menu).top(), title.bottom() + 1);
        if (direction == Qt::LeftToRight) {
            EXPECT_EQ(cardOf(menu).left(), title.left());
        } else {
            EXPECT_EQ(cardOf(menu).right(), title.right());
        }
    }
}

TEST_F(PopupCardsTest, aPressOnTheShadowClosesTheMenu) {
    // Later versions of Qt close a menu at a press where the pointer was when the menu opened.
    window_.show();
    QTest::mouseMove(window_.windowHandle(), QPoint(290, 390));
    const auto press = [this](QPoint place) {
        menu_.popup({200, 100});
        QTest::mousePress(&menu_, Qt::LeftButton, {}, place);
    };
    press(QRect({}, menu_.sizeHint()).center());
    EXPECT_TRUE(menu_.isVisible());
    press({2, 2});
    EXPECT_FALSE(menu_.isVisible());
}

TEST_F(PopupCardsTest, aMenuHasARoundMaskWhereWindowsAreNotBlended) {
    shadow_.blended = false;
    menu_.popup({200, 100});
    menu_.setPalette(Tokens::palette(ColorScheme::light));
    const QImage picture = test::popupPicture(menu_, 1, Tokens::onSurface.color(ColorScheme::light));
    EXPECT_EQ(picture.pixelColor(0, 0), Tokens::divider(ColorScheme::light))
        << "black in part of the corners";
    EXPECT_TRUE(shadow_.painted.empty());
    EXPECT_EQ(menu_.pos(), QPoint(200, 100));
    EXPECT_EQ(shadow_.lastCut.boundingRect().toAlignedRect(), menu_.rect());
    EXPECT_FALSE(shadow_.lastCut.contains(QPointF(1, 1)));
    // Entries are added while it is open.
    menu_.addAction(QStringLiteral("Another one"));
    EXPECT_EQ(shadow_.lastCut.boundingRect().toAlignedRect(), menu_.rect());
    menu_.close();

    shadow_.blended = true;
    menu_.popup({200, 100});
    EXPECT_EQ(menu_.contentsMargins(), room());
    EXPECT_EQ(PopupCards::card(menu_).height(), 2 * 4 + 3 * 28);
    EXPECT_EQ(menu_.actionGeometry(menu_.actions().front()).topLeft(),
              PopupCards::card(menu_).topLeft() + QPoint(4, 4));
}

TEST_F(PopupCardsTest, aListOpensWithTheCurrentChoiceOverItsPicker) {
    for (const bool blended : {true, false}) {
        shadow_.blended = blended;
        for (const int current : {-1, 0, 2}) {
            Picker& sounds = picker(current);
            sounds.showPopup();
            const QAbstractItemView& list = *sounds.view();
            const QRect card = cardOf(*list.window());
            EXPECT_EQ(card.height(), 2 * 4 + 3 * 28);
            EXPECT_EQ(card.left(), sounds.mapToGlobal(QPoint()).x() - 2);
            EXPECT_EQ(card.width(), sounds.width() + 4);
            const QModelIndex row = list.model()->index(std::max(0, current), 0);
            EXPECT_EQ(list.viewport()->mapToGlobal(list.visualRect(row).topLeft()).y(),
                      sounds.mapToGlobal(QPoint()).y());
            // All choices are visible at once, with the same margin on each side.
            EXPECT_EQ(list.viewport()->size(), card.size() - QSize(8, 8));
            EXPECT_EQ(list.viewport()->mapToGlobal(QPoint()), card.topLeft() + QPoint(4, 4));
            sounds.hidePopup();
            sounds.hide();
        }
    }
}

TEST_F(PopupCardsTest, aPlainListAlignsItsTextsWithThePickersAndTicksTheCurrentChoice) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        Picker& sounds = picker(1);
        window_.setPalette(Tokens::palette(scheme));
        sounds.showPopup();
        QWidget& popup = *sounds.view()->window();
        const QImage picture = test::popupPicture(popup, 1, Tokens::background.color(scheme));
        const QRect card = PopupCards::card(popup);
        const QColor surface = Tokens::surface.color(scheme);
        EXPECT_EQ(picture.pixelColor(card.topLeft() + QPoint(1, 1)), Tokens::background.color(scheme));
        for (const QPoint place :
             {QPoint(6, 20), QPoint(2, 40), QPoint(card.width() / 2, 3), QPoint(100, 80)})
            EXPECT_EQ(picture.pixelColor(card.topLeft() + place), surface) << place.x() << " " << place.y();

        const auto inkFrom = [&](const QImage& image, const QRect& part, const QColor& ground) {
            for (int x = part.left(); x <= part.right(); ++x) {
                for (int y = part.top(); y <= part.bottom(); ++y) {
                    if (std::abs(image.pixelColor(x, y).lightness() - ground.lightness()) > 60) return x;
                }
            }
            return -1;
        };
        // "Ping", in the list and in the picker itself.
        const QRect row(card.left() + 10, card.top() + 4 + 28 + 6, 60, 16);
        const int inList = inkFrom(picture, row, Tokens::pressedFill(scheme)) + popup.geometry().x();
        const QImage closed = test::pictureOf(window_, scheme, 1);
        const QRect own = QRect(sounds.x() + 4, sounds.y() + 6, 60, 16);
        const int inPicker = inkFrom(closed, own, surface) + window_.geometry().x();
        EXPECT_EQ(inList, inPicker);

        // The tick is the only thing at the end of the rows.
        QRect tick;
        for (int y = card.top() + 4; y <= card.bottom() - 4; ++y) {
            for (int x = card.right() - 4 - 8 - 16; x < card.right() - 4 - 6; ++x) {
                const QColor ground = picture.pixelColor(card.left() + 8, y);
                if (std::abs(picture.pixelColor(x, y).lightness() - ground.lightness()) > 60)
                    tick |= QRect(x, y, 1, 1);
            }
        }
        EXPECT_GE(tick.width(), 8);
        EXPECT_LE(tick.width(), 14);
        EXPECT_NEAR(tick.center().y(), card.top() + 4 + 28 + 14, 1);
        sounds.hidePopup();
        sounds.hide();
    }
}

} // namespace
} // namespace corvane
