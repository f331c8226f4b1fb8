#include "App/Support/LargeText.h"
#include "App/Support/PanelStates.h"
#include "App/Support/Pictures.h"
#include "App/Support/WindowStates.h"
#include "Settings/AgentCard.h"

#include <QDir>
#include <QFontInfo>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace corvane {
namespace {

class WindowImages : public testing::Test {
    const test::FractionalMetrics metrics_;
};

// With CORVANE_UPDATE_PICTURES set the pictures are written instead, for a person to look at before they are
// committed.
void expectAsItWas(const QImage& image, const QString& name) {
    const QDir references(QStringLiteral(CORVANE_WINDOW_PICTURES));
    if (std::getenv("CORVANE_UPDATE_PICTURES") != nullptr) {
        ASSERT_TRUE(test::reduced(image).save(references.filePath(name), nullptr, 0));
        return;
    }
    const QImage reference(references.filePath(name));
    ASSERT_EQ(reference.size(), image.size()) << name.toStdString();
    const test::Difference found = test::difference(image, reference);
    if (found.isNoticeable()) {
        const QDir actual(QDir::temp().filePath(QStringLiteral("corvane-window-pictures")));
        actual.mkpath(QStringLiteral("."));
        image.save(actual.filePath(name));
        FAIL() << name.toStdString() << ": " << found.mean << " " << found.visibleShare
               << "; what was drawn is in " << actual.filePath(name).toStdString();
    }
}

void expectWindowAsItWas(const test::WindowState& state, const test::Variant& variant) {
    const test::LargeText size(variant.textScale);
    test::ModelFixture fixture;
    const std::unique_ptr<QWidget> view = state.make(fixture);
    expectAsItWas(test::pictureOf(*view, variant.look, variant.ratio),
                  QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name));
}

TEST_F(WindowImages, everyStateLooksAsItDid) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";
    for (const test::WindowState& state : test::windowStates()) {
        for (const test::Variant& variant : test::ordinaryVariants())
            expectWindowAsItWas(state, variant);
    }
}

TEST_F(WindowImages, everyWindowLooksAsItDidWithHighContrastAndLargeText) {
    const std::set<std::string> shown{"first-run-error", "settings-agents", "settings-alerts",
                                      "settings-about"};
    for (const test::WindowState& state : test::windowStates()) {
        if (!shown.contains(state.name)) continue;
        for (const test::Variant& variant : test::legibleVariants())
            expectWindowAsItWas(state, variant);
    }
}

TEST_F(WindowImages, thePanelLooksAsItDid) {
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

TEST_F(WindowImages, aCardThatMovesByAPixelIsNoticed) {
    test::ModelFixture fixture;
    const auto view = fixture.onboarding();
    const QImage before = test::pictureOf(*view, ColorScheme::light, 1);
    QWidget* const card = view->findChild<AgentCard*>();
    card->move(card->pos() + QPoint(0, 1));
    EXPECT_TRUE(test::difference(test::pictureOf(*view, ColorScheme::light, 1), before).isNoticeable());
}

} // namespace
} // namespace corvane
