#include "App/Support/PseudoTranslator.h"
#include "App/Support/WindowStates.h"
#include "Controls/ErrorText.h"
#include "Controls/Paragraph.h"
#include "Settings/AgentCard.h"
#include "Settings/SettingsWindow.h"
#include "Style/Translations.h"

#include <QApplication>
#include <QFile>
#include <QStackedWidget>
#include <QTranslator>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <map>
#include <set>

namespace corvane {
namespace {

using Key = std::pair<std::string, std::string>; // context, source text

/// A catalogue's keys with their translations.
std::map<Key, std::string> catalogue(const char* name) {
    QFile file(QStringLiteral(CORVANE_TRANSLATIONS "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    QXmlStreamReader reader(&file);
    std::map<Key, std::string> result;
    std::string context;
    std::string source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        if (reader.name() == QLatin1String("name")) context = reader.readElementText().toStdString();
        if (reader.name() == QLatin1String("source")) source = reader.readElementText().toStdString();
        if (reader.name() == QLatin1String("translation"))
            result[{context, source}] = reader.readElementText().toStdString();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return result;
}

class TranslationsTest : public testing::Test {
  protected:
    ~TranslationsTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    /// Every part has the space that its text needs, inside its parent and without overlapping.
    static void expectNothingCut(const QWidget& view) {
        for (const auto* const paragraph : view.findChildren<Paragraph*>()) {
            if (!paragraph->isVisibleTo(&view)) continue;
            EXPECT_GE(paragraph->height(), paragraph->heightForWidth(paragraph->width()))
                << paragraph->text().toStdString();
            EXPECT_TRUE(paragraph->parentWidget()->rect().contains(paragraph->geometry()))
                << paragraph->text().toStdString();
        }
        for (auto* const button : view.findChildren<QAbstractButton*>()) {
            if (!button->isVisibleTo(&view)) continue;
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
            EXPECT_TRUE(button->parentWidget()->rect().contains(button->geometry()))
                << button->text().toStdString();
        }
        std::map<QWidget*, std::vector<QWidget*>> siblings;
        for (auto* const part : view.findChildren<QWidget*>()) {
            const bool isPart =
                qobject_cast<QAbstractButton*>(part) != nullptr ||
                qobject_cast<Paragraph*>(part) != nullptr || qobject_cast<Card*>(part) != nullptr ||
                qobject_cast<Picker*>(part) != nullptr || qobject_cast<ErrorText*>(part) != nullptr;
            if (!isPart || !part->isVisibleTo(&view)) continue;
            for (const QWidget* const other : siblings[part->parentWidget()]) {
                EXPECT_FALSE(part->geometry().intersects(other->geometry()))
                    << part->metaObject()->className() << " over " << other->metaObject()->className();
            }
            siblings[part->parentWidget()].push_back(part);
        }
        for (const auto* const picker : view.findChildren<Picker*>())
            EXPECT_GE(picker->width(), picker->sizeHint().width());
    }

    static void expectNoKeyLeft(const QWidget& view) {
        const auto isTranslated = [](const QString& text) {
            for (const QChar character : text) {
                // Inserted arguments: versions, paths and names of agents and sounds.
                if (character.unicode() > 0x7F) return true;
            }
            return false;
        };
        for (const auto* const paragraph : view.findChildren<Paragraph*>())
            EXPECT_TRUE(isTranslated(paragraph->text())) << paragraph->text().toStdString();
        for (const auto* const button : view.findChildren<QAbstractButton*>()) {
            if (button->text().isEmpty()) continue;
            EXPECT_TRUE(isTranslated(button->text())) << button->text().toStdString();
        }
    }

    /// Draws every state in pseudo-translations of this direction and calls `check` for it.
    template <typename Check>
    static void forEveryState(Qt::LayoutDirection direction, Check check) {
        test::PseudoTranslator words(direction);
        QCoreApplication::installTranslator(&words);
        QApplication::setLayoutDirection(direction);
        for (const test::WindowState& state : test::windowStates()) {
            SCOPED_TRACE(state.name);
            test::ModelFixture fixture;
            const std::unique_ptr<QWidget> view = state.make(fixture);
            view->setLayoutDirection(direction);
            (void)view->grab();
            check(*view);
        }
        QCoreApplication::removeTranslator(&words);
    }
};

TEST_F(TranslationsTest, linuxChangesTheseKeysAndNoOthers) {
    std::vector<std::string> changes;
    for (const auto& [key, translation] : catalogue("corvane_en_linux.ts"))
        changes.push_back(key.first + ": " + key.second + " => " + translation);
    EXPECT_EQ(
        changes,
        (std::vector<std::string>{
            "corvane::AboutTab: Corvane taps you when Claude Code or Codex needs you.\nIt needs no account, "
            "keeps everything on the Mac and never goes online. => Corvane taps you when Claude Code or "
            "Codex needs you.\nIt needs no account, keeps everything on this computer and never goes online.",
            "corvane::AboutTab: More Mac apps ↗ => More apps ↗",
            "corvane::AboutTab: Small, careful Mac apps for people who work with AI agents. => Small, "
            "careful apps for people who work with AI agents.",
            "corvane::AgentsTab: Show backup in Finder => Show backup in Files",
            "corvane::OnboardingView: When Claude Code is waiting for your approval or your reply — or "
            "finishes — you hear a sound and see a banner, even in a full-screen app. Lives in your menu "
            "bar. => When Claude Code is waiting for your approval or your reply — or finishes — you hear a "
            "sound and see a banner, even in a full-screen app. Lives in your system tray."}));
}

TEST_F(TranslationsTest, everyChangedKeyIsAKeyOfTheSources) {
    const auto all = catalogue("corvane.ts");
    for (const auto& [key, translation] : catalogue("corvane_en_linux.ts"))
        EXPECT_TRUE(all.contains(key)) << key.second;
}

TEST_F(TranslationsTest, theSystemsWordsReachTheViews) {
    if (!QFile::exists(translations::systemWords())) GTEST_SKIP() << "the keys are this system's words";
    QTranslator words;
    ASSERT_TRUE(words.load(translations::systemWords()));
    QCoreApplication::installTranslator(&words);
    test::ModelFixture fixture;
    const auto settings = fixture.settings();
    std::set<std::string> texts;
    for (const auto* const button : settings->findChildren<LinkButton*>())
        texts.insert(button->text().toStdString());
    const auto onboarding = fixture.onboarding();
    for (const auto* const paragraph : onboarding->findChildren<Paragraph*>())
        texts.insert(paragraph->text().toStdString());
    QCoreApplication::removeTranslator(&words);

    EXPECT_TRUE(texts.contains("Show backup in Files"));
    EXPECT_TRUE(texts.contains("More apps ↗"));
    EXPECT_TRUE(texts.contains("Corvane taps you when your agent needs you."));
    for (const std::string& text : texts)
        EXPECT_EQ(text.find("menu bar"), std::string::npos) << text;
}

TEST_F(TranslationsTest, installingGivesTheSystemsWordsToTheApplication) {
    if (!QFile::exists(translations::systemWords())) GTEST_SKIP() << "the keys are this system's words";
    translations::install(*QCoreApplication::instance());
    EXPECT_EQ(QCoreApplication::translate("corvane::AgentsTab", "Show backup in Finder").toStdString(),
              "Show backup in Files");
    for (auto* const words : QCoreApplication::instance()->findChildren<QTranslator*>())
        delete words;
    EXPECT_EQ(QCoreApplication::translate("corvane::AgentsTab", "Show backup in Finder").toStdString(),
              "Show backup in Finder");
}

TEST_F(TranslationsTest, longAccentedWordsAreNowhereCut) {
    forEveryState(Qt::LeftToRight, [](const QWidget& view) {
        expectNothingCut(view);
        expectNoKeyLeft(view);
    });
}

TEST_F(TranslationsTest, rightToLeftWordsAreNowhereCut) {
    forEveryState(Qt::RightToLeft, [](const QWidget& view) {
        expectNothingCut(view);
        expectNoKeyLeft(view);
    });
}

TEST_F(TranslationsTest, everyPartOfAPageMirrors) {
    for (const test::WindowState& state : test::windowStates()) {
        SCOPED_TRACE(state.name);
        test::ModelFixture fixture;
        const std::unique_ptr<QWidget> view = state.make(fixture);
        view->setLayoutDirection(Qt::LeftToRight);
        (void)view->grab();
        std::vector<std::pair<QWidget*, QRect>> before;
        for (auto* const part : view->findChildren<QWidget*>()) {
            const bool isOurs = qobject_cast<Paragraph*>(part) != nullptr ||
                                qobject_cast<QAbstractButton*>(part) != nullptr ||
                                qobject_cast<Picker*>(part) != nullptr;
            if (isOurs && part->isVisibleTo(view.get())) before.emplace_back(part, part->geometry());
        }
        ASSERT_FALSE(before.empty());
        view->setLayoutDirection(Qt::RightToLeft);
        (void)view->grab();
        for (const auto& [part, geometry] : before) {
            const int mirrored = part->parentWidget()->width() - geometry.right() - 1;
            // Centred parts may be half a pixel off the middle.
            EXPECT_NEAR(part->geometry().left(), mirrored, 1) << part->accessibleName().toStdString();
        }
    }
}

} // namespace
} // namespace corvane
