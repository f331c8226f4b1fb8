// Texts composed from phrases and names, in pseudo-translations.

#include "App/Support/BannerStates.h"
#include "App/Support/PanelStates.h"
#include "App/Support/Pictures.h"
#include "App/Support/PseudoTranslator.h"
#include "App/Support/WindowStates.h"
#include "Controls/Labels.h"
#include "Controls/Paragraph.h"
#include "MenuBar/TrayMenu.h"
#include "Style/StatusIcon.h"

#include <QAction>
#include <QApplication>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace corvane {
namespace {

bool isMadeUp(const QString& text) {
    for (const QChar character : text) {
        if (character.isLetter() && character.unicode() > 0x7F) return true;
    }
    return false;
}

class ComposedTexts : public testing::TestWithParam<Qt::LayoutDirection> {
  protected:
    ComposedTexts() {
        QCoreApplication::installTranslator(&words_);
        QApplication::setLayoutDirection(GetParam());
    }
    ~ComposedTexts() override {
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QCoreApplication::removeTranslator(&words_);
    }

    /// Everything that must not be truncated has enough space, inside the view and without overlapping.
    static void expectNothingCut(const QWidget& view) {
        std::map<QWidget*, std::vector<QRect>> taken;
        for (auto* const part : view.findChildren<QWidget*>()) {
            if (!part->isVisibleTo(&view)) continue;
            const auto* const bare = qobject_cast<const BareButton*>(part);
            const auto* const line = qobject_cast<const LineLabel*>(part);
            const auto* const text = qobject_cast<const Paragraph*>(part);
            const bool isRow = qobject_cast<const SessionRow*>(part) != nullptr;
            const bool isButton = qobject_cast<const QAbstractButton*>(part) != nullptr && !isRow;
            if (!isButton && line == nullptr && text == nullptr) continue;
            const std::string name = part->accessibleName().toStdString() + part->metaObject()->className();
            const QRect place = bare != nullptr ? bare->contentRect() : part->geometry();
            if (text != nullptr) {
                EXPECT_GE(place.height(), text->heightForWidth(place.width())) << name;
            } else if (bare == nullptr) {
                EXPECT_GE(place.width(), part->sizeHint().width()) << name;
            }
            EXPECT_TRUE(part->parentWidget()->rect().contains(place)) << name;
            for (const QRect& other : taken[part->parentWidget()])
                EXPECT_FALSE(place.intersects(other)) << name;
            taken[part->parentWidget()].push_back(place);
        }
    }

  private:
    test::PseudoTranslator words_{GetParam()};
};

TEST_P(ComposedTexts, everyTextOfABannerIsTranslatedAndNothingIsCut) {
    for (const test::BannerState& state : test::bannerStates()) {
        SCOPED_TRACE(state.name);
        state.banner->setLayoutDirection(GetParam());
        (void)state.banner->grab();
        expectNothingCut(*state.banner);
        const auto lines = state.banner->findChildren<LineLabel*>();
        EXPECT_TRUE(isMadeUp(lines.at(0)->text())) << lines.at(0)->text().toStdString();
        if (state.name == "waiting") {
            EXPECT_TRUE(lines.at(1)->text().startsWith(QStringLiteral("shop · ")));
            EXPECT_TRUE(lines.at(1)->text().endsWith(QStringLiteral(" Bash")));
            EXPECT_TRUE(isMadeUp(lines.at(1)->text())) << lines.at(1)->text().toStdString();
            EXPECT_TRUE(isMadeUp(lines.at(2)->text()));
            EXPECT_TRUE(lines.at(2)->text().endsWith(QStringLiteral(" 0:42")));
        }
        for (const auto* const button : state.banner->findChildren<QAbstractButton*>())
            EXPECT_TRUE(isMadeUp(button->text() + button->accessibleName()));
        // What is announced when it appears.
        EXPECT_TRUE(state.banner->accessibleName().startsWith(lines.at(0)->text()));
    }
}

TEST_P(ComposedTexts, everyTextOfThePanelIsTranslatedAndNothingIsCut) {
    for (const test::PanelState& state : test::panelStates()) {
        SCOPED_TRACE(state.name);
        test::MenuBarWorld world;
        // These states find their buttons by the texts' keys.
        if (state.name == "many" || state.name == "mixed-hover-and-focus") continue;
        const auto view = state.make(world);
        view->setLayoutDirection(GetParam());
        view->resize(view->sizeHint());
        (void)view->grab();
        EXPECT_EQ(view->width(), 340);
        expectNothingCut(*view);
        for (const SessionRow* const row : view->list().rows()) {
            const auto lines = row->findChildren<LineLabel*>();
            EXPECT_TRUE(isMadeUp(lines.at(1)->text())) << lines.at(1)->text().toStdString();
            EXPECT_TRUE(row->spokenText().endsWith(lines.at(1)->text().section(QStringLiteral(" · "), 1)));
        }
        for (const auto* const button : view->findChildren<QAbstractButton*>()) {
            const bool isRow = qobject_cast<const SessionRow*>(button) != nullptr;
            EXPECT_TRUE(isRow || isMadeUp(button->text())) << button->text().toStdString();
        }
    }
}

TEST_P(ComposedTexts, everyEntryOfTheTraysMenuIsTranslated) {
    test::MenuBarWorld world;
    world.connect();
    world.waits("a");
    world.runs("b");
    const TrayMenu menu(world.model(), {[] {}, [] {}, [] {}});
    for (const bool isQuiet : {false, true}) {
        if (isQuiet) world.model().quietForAnHour();
        for (const QAction* const entry : menu.actions()) {
            EXPECT_TRUE(!entry->isVisible() || entry->isSeparator() || isMadeUp(entry->text()))
                << entry->text().toStdString();
        }
    }
}

TEST_P(ComposedTexts, theTraysLabelIsTranslatedWithItsNumber) {
    for (const int count : {0, 1, 2, 100}) {
        EXPECT_TRUE(isMadeUp(statusicon::label(count)));
        EXPECT_EQ(statusicon::label(count).contains(QString::number(count)), count > 0);
    }
}

TEST_P(ComposedTexts, everyErrorIsTranslatedAndKeepsItsPath) {
    const auto expectTranslated = [](const AppModel& model, const char* part) {
        ASSERT_TRUE(model.connectError());
        EXPECT_TRUE(isMadeUp(QString::fromStdString(*model.connectError()))) << *model.connectError();
        EXPECT_NE(model.connectError()->find(part), std::string::npos) << *model.connectError();
        for (const char* const english :
             {"Nothing", "changed", "JSON", "Codex already", "could not", "Couldn"})
            EXPECT_EQ(model.connectError()->find(english), std::string::npos) << *model.connectError();
    };
    test::ModelFixture fixture;
    test::writeFile(fixture.home / ".claude/settings.json", "no JSON");
    fixture.model().connectAgent(AgentKind::claude);
    expectTranslated(fixture.model(), "/.claude/settings.json");
    fixture.model().disconnectAgent(AgentKind::claude);
    expectTranslated(fixture.model(), "Claude");
    fixture.failToConnectCodex();
    expectTranslated(fixture.model(), "/usr/local/bin/ping-me");
    std::filesystem::remove(fixture.home / ".claude/settings.json");
    std::filesystem::create_directory(fixture.home / ".claude/settings.json");
    fixture.model().connectAgent(AgentKind::claude);
    expectTranslated(fixture.model(), "Claude");
    fixture.platform.loginItem.failure = "x";
    fixture.model().setOpensAtLogin(true);
    expectTranslated(fixture.model(), ": x");
}

INSTANTIATE_TEST_SUITE_P(Directions, ComposedTexts, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
                         [](const auto& direction) {
                             return direction.param == Qt::RightToLeft ? "rightToLeft" : "leftToRight";
                         });

TEST(Paragraphs, beginAtTheLayoutsLeadingEdge) {
    const auto inkLeft = [](Qt::LayoutDirection direction, Qt::Alignment alignment) {
        Paragraph::Style style;
        style.alignment = alignment;
        Paragraph paragraph(QStringLiteral("Codex"), style, nullptr);
        paragraph.setLayoutDirection(direction);
        paragraph.resize(400, 20);
        const QImage image = test::pictureOf(paragraph, ColorScheme::light, 1);
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y).lightness() < 128) return x;
            }
        }
        return -1;
    };
    EXPECT_LT(inkLeft(Qt::LeftToRight, Qt::AlignLeading), 5);
    EXPECT_GT(inkLeft(Qt::RightToLeft, Qt::AlignLeading), 350);
    EXPECT_NEAR(inkLeft(Qt::RightToLeft, Qt::AlignHCenter), inkLeft(Qt::LeftToRight, Qt::AlignHCenter), 1);
}

TEST(Paragraphs, aPathMovesToTheNextLineAsAWhole) {
    Paragraph::Style style;
    style.lineHeight = 16;
    Paragraph paragraph(QStringLiteral("Alerts when Codex finishes a turn. ~/.codex/config.toml"), style,
                        nullptr);
    Paragraph words(QStringLiteral("Alerts when Codex finishes a turn. ~/.codex/"), style, nullptr);
    Paragraph path(QStringLiteral("~/.codex/config.toml"), style, nullptr);
    // If the path were broken after its folder, that part would stay on the first line.
    const int width = words.naturalWidth() + 4;
    const auto inkRight = [width](Paragraph& of, int line) {
        of.resize(width, 32);
        const QImage image = test::pictureOf(of, ColorScheme::light, 1);
        for (int x = width - 1; x >= 0; --x) {
            for (int y = line * 16; y < line * 16 + 16; ++y) {
                if (image.pixelColor(x, y).lightness() < 128) return x;
            }
        }
        return -1;
    };
    ASSERT_EQ(paragraph.heightForWidth(width), 32);
    EXPECT_NEAR(inkRight(paragraph, 1), path.naturalWidth(), 3);
}

} // namespace
} // namespace corvane
