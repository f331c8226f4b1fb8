#include "App/Support/DirectionMarks.h"
#include "App/Support/MenuBarSupport.h"
#include "Connection/AgentConnector.h"
#include "MenuBar/TrayMenu.h"
#include "Style/CorvaneStyle.h"
#include "Style/Times.h"
#include "Style/Tokens.h"

#include <QAction>
#include <QImage>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

class TrayMenuTest : public testing::Test {
  protected:
    TrayMenuTest() {
        menu_.setStyle(&style_);
        world_.connect();
    }

    /// The entries of the sessions: those between the first two separators.
    std::vector<QAction*> sessions() {
        std::vector<QAction*> found;
        const QList<QAction*> actions = menu_.actions();
        auto at =
            std::find_if(actions.begin(), actions.end(), [](QAction* each) { return each->isSeparator(); });
        for (++at; at != actions.end() && !(*at)->isSeparator(); ++at)
            found.push_back(*at);
        return found;
    }

    /// How often any entry has changed, as a host on the message bus would be notified.
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

    /// The texts of the visible entries; a divider is "-".
    std::vector<std::string> entries() {
        std::vector<std::string> found;
        for (const QAction* const action : menu_.actions()) {
            if (action->isVisible())
                found.push_back(action->isSeparator() ? "-" : action->text().toStdString());
        }
        return found;
    }
    QAction* entry(const char* text) {
        for (QAction* const action : menu_.actions()) {
            if (action->isVisible() && action->text() == QString::fromUtf8(text)) return action;
        }
        return nullptr;
    }

    /// The text of the entry for a session of this folder.
    QString listed(const std::string& folder) {
        world_.runs("a", folder);
        return sessions().at(0)->text();
    }

    CorvaneStyle style_;
    test::MenuBarWorld world_;
    int windowsOpened_ = 0;
    TrayMenu menu_{world_.model(), {[this] { ++windowsOpened_; }, [] {}, [] {}}};
};

TEST_F(TrayMenuTest, anEntryKeepsItsSessionWhenTheOrderChanges) {
    world_.runs("a", "first");
    world_.runs("b", "second");
    std::vector<QAction*> before = sessions();
    ASSERT_EQ(before.size(), 2U);
    QAction* const lower = before[1];
    const QString id = lower->data().toString();
    // Waiting sessions come first.
    world_.waits(id.endsWith(QLatin1Char('a')) ? "a" : "b",
                 id.endsWith(QLatin1Char('a')) ? "first" : "second");
    const std::vector<QAction*> after = sessions();
    ASSERT_EQ(after.size(), 2U);
    EXPECT_EQ(after[0], lower);
    EXPECT_EQ(after[1], before[0]);
    EXPECT_EQ(lower->data().toString(), id);
    EXPECT_TRUE(lower->text().contains(QStringLiteral("Waiting for you"))) << lower->text().toStdString();
}

TEST_F(TrayMenuTest, anEntryIsRemovedWithItsSessionAndTheOthersStay) {
    world_.runs("a", "first");
    world_.runs("b", "second");
    world_.runs("c", "third");
    const std::vector<QAction*> before = sessions();
    ASSERT_EQ(before.size(), 3U);
    world_.ends("b");
    const std::vector<QAction*> after = sessions();
    ASSERT_EQ(after.size(), 2U);
    for (const QAction* const action : after)
        EXPECT_FALSE(action->text().contains(QStringLiteral("second")));
    for (QAction* const action : after)
        EXPECT_NE(std::find(before.begin(), before.end(), action), before.end());
}

TEST_F(TrayMenuTest, nothingChangesWhileItIsClosedAndOnlyTimePasses) {
    world_.connect();
    world_.waits("a");
    world_.codexDone("b", "other");
    EXPECT_EQ(changesWhile([this] { world_.pass(150); }), 0);
}

TEST_F(TrayMenuTest, theTimesAreRightWhenItOpens) {
    world_.connect();
    world_.waits("a");
    world_.codexDone("b", "other");
    world_.pass(150);
    Q_EMIT menu_.aboutToShow();
    EXPECT_EQ(text(0), "\u2068shop\u2069 · Claude · Waiting for you · 2:32");
    EXPECT_EQ(text(1), "\u2068other\u2069 · Codex · Done 2 min ago");
}

TEST_F(TrayMenuTest, theTimesAdvanceWhileItIsOpen) {
    world_.connect();
    world_.waits("a");
    Q_EMIT menu_.aboutToShow();
    world_.pass(5);
    EXPECT_EQ(text(0), "\u2068shop\u2069 · Claude · Waiting for you · 0:06");
    Q_EMIT menu_.aboutToHide();
    EXPECT_EQ(changesWhile([this] { world_.pass(5); }), 0);
}

// As with hosts that report only the opening.
TEST_F(TrayMenuTest, theTimesStopAMinuteAfterTheLastOpening) {
    world_.connect();
    world_.waits("a");
    Q_EMIT menu_.aboutToShow();
    world_.pass(70);
    EXPECT_EQ(changesWhile([this] { world_.pass(30); }), 0);
}

TEST_F(TrayMenuTest, entriesFollowTheModelWhileItIsClosed) {
    world_.connect();
    world_.runs("a");
    EXPECT_EQ(text(0), "\u2068shop\u2069 · Claude · Running");
    world_.waits("a");
    EXPECT_EQ(text(0).substr(0, 39), "\u2068shop\u2069 · Claude · Waiting for you");
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

TEST_F(TrayMenuTest, aLongNameIsElidedBetweenCharactersSoThatTheMenuStaysNarrow) {
    std::string name;
    for (int i = 0; i < 120; ++i)
        name += "👩‍🚀";
    const QString text = listed(name);
    const QString cut =
        text.left(text.indexOf(QStringLiteral(" · "))).mid(1).chopped(1); // without its isolate
    EXPECT_FALSE(cut.contains(QChar(QChar::ReplacementCharacter)));
    // Three code points per character, and the ellipsis.
    EXPECT_EQ(cut.toUcs4().size() % 3, 1) << cut.toStdString();
    EXPECT_GT(cut.toUcs4().size(), 15);
    EXPECT_TRUE(cut.contains(QStringLiteral("…")));
    EXPECT_LE(menu_.sizeHint().width(), 380);
    EXPECT_GT(menu_.sizeHint().width(), 350);
}

TEST_F(TrayMenuTest, aNameThatFitsIsNotElided) {
    std::string marked = "e";
    for (int i = 0; i < 60; ++i) // a folder's name is at most 255 bytes long
        marked += "\u0301";
    EXPECT_TRUE(
        listed(marked).startsWith(QString::fromStdString(test::firstStrongIsolate() + marked + "\u2069 · ")));
}

TEST_F(TrayMenuTest, aNamesDirectionDoesNotAffectWhatFollows) {
    // Overrides and isolates would reverse or swallow what follows.
    EXPECT_EQ(listed("a" + test::rightToLeftOverride() + "b" + test::rightToLeftIsolate() + "c\u2069d"),
              QString::fromUtf8("\u2068abcd\u2069 · Claude · Running"));
}

TEST_F(TrayMenuTest, aNameIsOneLineOfPlainText) {
    EXPECT_EQ(listed("a\\tb\\u0007c & d"), QString::fromUtf8("\u2068a b c && d\u2069 · Claude · Running"));
}

TEST_F(TrayMenuTest, anInvisibleNameIsLeftOut) {
    EXPECT_EQ(listed(test::rightToLeftOverride() + " "), QStringLiteral("Claude · Running"));
}

TEST_F(TrayMenuTest, withoutAConnectedAgentItOffersToConnectOneAndListsNothing) {
    // By another program: the model would drop what the agent reports.
    AgentConnector(world_.home.path(), world_.paths).disconnect(AgentKind::claude);
    world_.model().refreshConnections();
    world_.waits("a", "shop");
    EXPECT_EQ(entries(), (std::vector<std::string>{"Open Corvane", "Connect Claude Code", "-",
                                                   "Quiet for 1 hour", "Settings…", "Quit"}));
    entry("Connect Claude Code")->trigger();
    EXPECT_TRUE(world_.model().connected().at(AgentKind::claude));
    EXPECT_EQ(windowsOpened_, 0);
    EXPECT_EQ(entries(), (std::vector<std::string>{"Open Corvane", "-",
                                                   "\u2068shop\u2069 · Claude · Waiting for you · 0:01", "-",
                                                   "Quiet for 1 hour", "Settings…", "Quit"}));
}

TEST_F(TrayMenuTest, theWindowShowsWhyConnectingFailed) {
    world_.model().disconnectAgent(AgentKind::claude);
    test::writeFile(world_.home / ".claude/settings.json", "no JSON");
    entry("Connect Claude Code")->trigger();
    EXPECT_TRUE(world_.model().connectError());
    EXPECT_EQ(windowsOpened_, 1);
}

TEST_F(TrayMenuTest, resumeIsBelowTheTimeAtWhichQuietEnds) {
    world_.model().quietForAnHour();
    const QString until = times::quietUntil(*world_.model().quietUntil());
    EXPECT_EQ(entries(), (std::vector<std::string>{"Open Corvane", "-", until.toStdString(), "Resume",
                                                   "Settings…", "Quit"}));
    EXPECT_FALSE(entry(until.toUtf8().constData())->isEnabled());
    world_.pass(3601);
    EXPECT_EQ(entries(),
              (std::vector<std::string>{"Open Corvane", "-", "Quiet for 1 hour", "Settings…", "Quit"}));
}

/// The colour in the middle of an entry's icon.
QColor dot(const QAction& action) {
    return action.icon().pixmap(16, 16).toImage().pixelColor(8, 8);
}

TEST_F(TrayMenuTest, aDotShowsEachSessionsStatus) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        menu_.setPalette(Tokens::palette(scheme));
        world_.runs("a", "shop");
        EXPECT_EQ(dot(*sessions().at(0)), Tokens::runningDot(scheme));
        const qint64 icon = sessions().at(0)->icon().cacheKey();
        world_.pass(5);
        EXPECT_EQ(sessions().at(0)->icon().cacheKey(), icon) << "hosts are sent each new icon";
        world_.waits("a", "shop");
        EXPECT_EQ(dot(*sessions().at(0)), Tokens::primary.color(scheme));
        world_.claude("Stop", "a");
        EXPECT_EQ(dot(*sessions().at(0)), Tokens::secondary.color(scheme));
    }
    const QImage icon = sessions().at(0)->icon().pixmap(16, 16).toImage();
    EXPECT_EQ(icon.pixelColor(3, 8).alpha(), 0);
    EXPECT_GT(icon.pixelColor(4, 8).alpha(), 128);
    EXPECT_GT(icon.pixelColor(11, 8).alpha(), 128);
    EXPECT_EQ(icon.pixelColor(12, 8).alpha(), 0);
    EXPECT_TRUE(entry("Quit")->icon().isNull());
}

} // namespace
} // namespace corvane
