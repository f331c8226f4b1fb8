#include "App/Support/LargeText.h"
#include "App/Support/PanelStates.h"
#include "App/Support/PictureComparison.h"
#include "App/Support/Pictures.h"
#include "App/Support/PopupStates.h"
#include "App/Support/WindowStates.h"
#include "Controls/PopupCards.h"
#include "Settings/AgentCard.h"

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace corvane {
namespace {

void expectAsItWas(const QImage& image, const QString& name) {
    test::expectAsItWas(image, QDir(QStringLiteral(CORVANE_WINDOW_PICTURES)), name);
}

void expectWindowAsItWas(const test::WindowState& state, const test::Variant& variant) {
    const test::LargeText size(variant.textScale);
    test::ModelFixture fixture;
    const std::unique_ptr<QWidget> view = state.make(fixture);
    expectAsItWas(test::pictureOf(*view, variant.look, variant.ratio),
                  QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name));
}

TEST(WindowImages, everyStateMatchesItsPicture) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";
    for (const test::WindowState& state : test::windowStates()) {
        for (const test::Variant& variant : test::ordinaryVariants())
            expectWindowAsItWas(state, variant);
    }
}

TEST(WindowImages, everyWindowMatchesItsPictureWithHighContrastAndLargeText) {
    const std::set<std::string> shown{"first-run-error", "settings-agents", "settings-alerts",
                                      "settings-about"};
    for (const test::WindowState& state : test::windowStates()) {
        if (!shown.contains(state.name)) continue;
        for (const test::Variant& variant : test::legibleVariants())
            expectWindowAsItWas(state, variant);
    }
}

TEST(WindowImages, thePanelMatchesItsPicture) {
    for (const test::PanelState& state : test::panelStates()) {
        std::vector<test::Variant> variants = test::legibleVariants();
        for (const test::Variant& variant : test::ordinaryVariants()) {
            if (variant.ratio == 1) variants.push_back(variant);
        }
        for (const test::Variant& variant : variants) {
            const test::LargeText size(variant.textScale);
            test::MenuBarWorld world;
            const std::unique_ptr<MenuBarView> view = state.make(world);
            expectAsItWas(
                test::panelPicture(*view, variant.look, variant.ratio),
                QStringLiteral("panel-%1-%2.png").arg(QString::fromStdString(state.name), variant.name));
        }
    }
}

TEST(WindowImages, everyMenuAndListMatchesItsPicture) {
    const test::ApplicationStyle style;
    recording::FakeWindowShadow shadow; // draws nothing; the shadow has its own tests
    const PopupCards popupCards(shadow);
    const QPalette before = QApplication::palette();
    for (const test::PopupState& state : test::popupStates()) {
        std::vector<test::Variant> variants = test::legibleVariants();
        for (const test::Variant& variant : test::ordinaryVariants()) {
            if (variant.ratio == 1) variants.push_back(variant);
        }
        for (const test::Variant& variant : variants) {
            // The application itself enlarges the menus' font.
            if (variant.textScale != 1 && state.name.starts_with("menu")) continue;
            const test::LargeText size(variant.textScale);
            QApplication::setPalette(Tokens::palette(variant.look));
            state.show([&](QWidget& popup) {
                expectAsItWas(
                    test::popupPicture(popup, variant.ratio, Tokens::background.color(variant.look)),
                    QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name));
            });
        }
    }
    QApplication::setPalette(before);
}

TEST(WindowImages, aCardThatMovesByAPixelIsDetected) {
    test::ModelFixture fixture;
    const auto view = fixture.onboarding();
    const QImage before = test::pictureOf(*view, ColorScheme::light, 1);
    QWidget* const card = view->findChild<AgentCard*>();
    card->move(card->pos() + QPoint(0, 1));
    EXPECT_GT(test::worstTile(test::pictureOf(*view, ColorScheme::light, 1), before),
              test::largestDifference);
}

} // namespace
} // namespace corvane
