#include "App/Support/MenuBarSupport.h"
#include "MenuBar/TrayMenu.h"

#include <QAction>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
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

    /// How often any entry has changed, as a host on the message bus would be told.
    int changesWhile(const std::function<void()>& action) {
        int changes = 0;
        std::vector<QMetaObject::Connection> connections;
        for (QAction* const entry : menu_.actions())
            connections.push_back(QObject::connect(entry, &QAction::changed, &menu_, [&] { ++changes; }));
        action();
        for (const QMetaObject::Connection& connection : connections)
            QObject::disconnect(connection);
        return changes;
    }

    [[nodiscard]] std::string text(std::size_t index) { return sessions().at(index)->text().toStdString(); }

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

TEST_F(TrayMenuTest, nothingChangesWhileItIsClosedAndOnlyTimePasses) {
    world_.waits("a");
    world_.codexDone("b", "other");
    EXPECT_EQ(changesWhile([this] { world_.pass(150); }), 0);
}

TEST_F(TrayMenuTest, theTimesAreRightWhenItOpens) {
    world_.waits("a");
    world_.codexDone("b", "other");
    world_.pass(150);
    Q_EMIT menu_.aboutToShow();
    EXPECT_EQ(text(0), "shop · Claude · Waiting for you · 2:32");
    EXPECT_EQ(text(1), "other · Codex · Done 2 min ago");
}

TEST_F(TrayMenuTest, theTimesRunWhileItIsOpen) {
    world_.waits("a");
    Q_EMIT menu_.aboutToShow();
    world_.pass(5);
    EXPECT_EQ(text(0), "shop · Claude · Waiting for you · 0:06");
    Q_EMIT menu_.aboutToHide();
    EXPECT_EQ(changesWhile([this] { world_.pass(5); }), 0);
}

// As under hosts that tell of the opening only.
TEST_F(TrayMenuTest, theTimesStandStillAMinuteAfterTheLastOpening) {
    world_.waits("a");
    Q_EMIT menu_.aboutToShow();
    world_.pass(70);
    EXPECT_EQ(changesWhile([this] { world_.pass(30); }), 0);
}

TEST_F(TrayMenuTest, whatThereIsIsFollowedWhileItIsClosed) {
    world_.runs("a");
    EXPECT_EQ(text(0), "shop · Claude · Running");
    world_.waits("a");
    EXPECT_EQ(text(0).substr(0, 33), "shop · Claude · Waiting for you");
    world_.ends("a");
    EXPECT_TRUE(sessions().empty());
    world_.model().quietForAnHour();
    const auto isShown = [this](const char* label) {
        const QList<QAction*> actions = menu_.actions();
        return std::any_of(actions.begin(), actions.end(), [label](const QAction* action) {
            return action->text() == QLatin1String(label) && action->isVisible();
        });
    };
    EXPECT_TRUE(isShown("Resume"));
    world_.pass(3601);
    EXPECT_TRUE(isShown("Quiet for 1 hour"));
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
