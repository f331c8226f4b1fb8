#include "App/Support/MenuBarSupport.h"
#include "MenuBar/TrayMenu.h"

#include <QAction>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace corvane {
namespace {

class TrayMenuTest : public testing::Test {
  protected:
    /// The entries of the sessions: those between the first two separators.
    std::vector<QAction*> sessions() {
        std::vector<QAction*> found;
        const QList<QAction*> actions = menu_.actions();
        for (qsizetype i = 2; i < actions.size() && !actions[i]->isSeparator(); ++i)
            found.push_back(actions[i]);
        return found;
    }

    test::MenuBarWorld world_;
    TrayMenu menu_{world_.model(), {[] {}, [] {}, [] {}}};
};

TEST_F(TrayMenuTest, anEntryStaysThatOfItsSessionWhenTheOrderChanges) {
    world_.runs("a", "first");
    world_.runs("b", "second");
    std::vector<QAction*> before = sessions();
    ASSERT_EQ(before.size(), 2U);
    QAction* const lower = before[1];
    const QString id = lower->data().toString();
    // Those who wait come first.
    world_.waits(id.endsWith(QLatin1Char('a')) ? "a" : "b",
                 id.endsWith(QLatin1Char('a')) ? "first" : "second");
    const std::vector<QAction*> after = sessions();
    ASSERT_EQ(after.size(), 2U);
    EXPECT_EQ(after[0], lower);
    EXPECT_EQ(after[1], before[0]);
    EXPECT_EQ(lower->data().toString(), id);
    EXPECT_TRUE(lower->text().contains(QStringLiteral("Waiting for you"))) << lower->text().toStdString();
}

TEST_F(TrayMenuTest, anEntryGoesWithItsSessionAndTheOthersStay) {
    world_.runs("a", "first");
    world_.runs("b", "second");
    world_.runs("c", "third");
    const std::vector<QAction*> before = sessions();
    ASSERT_EQ(before.size(), 3U);
    world_.ends("b");
    const std::vector<QAction*> after = sessions();
    ASSERT_EQ(after.size(), 2U);
    for (const QAction* const action : after)
        EXPECT_FALSE(action->text().startsWith(QStringLiteral("second")));
    for (QAction* const action : after)
        EXPECT_NE(std::find(before.begin(), before.end(), action), before.end());
}

TEST_F(TrayMenuTest, aLongNameIsCutBetweenCharacters) {
    std::string name;
    for (int i = 0; i < 60; ++i)
        name += "👩‍🚀";
    world_.runs("a", name);
    const QString text = sessions().at(0)->text();
    const QString cut = text.left(text.indexOf(QStringLiteral(" · ")));
    EXPECT_LE(cut.toUcs4().size(), 40);
    EXPECT_FALSE(cut.contains(QChar(QChar::ReplacementCharacter)));
    // Three code points a character, and the dots.
    EXPECT_EQ(cut.toUcs4().size() % 3, 1) << cut.toStdString();
    EXPECT_TRUE(cut.contains(QStringLiteral("…")));
}

} // namespace
} // namespace corvane
