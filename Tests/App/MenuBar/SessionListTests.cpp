#include "App/Support/Sessions.h"
#include "MenuBar/SessionList.h"
#include "Style/Tokens.h"
#include "Support/TestSupport.h"

#include <QApplication>
#include <QScrollBar>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

using test::waitingSession;

Date at(double seconds) {
    return Date(1'790'000'000, 0) + Seconds(seconds);
}

/// Waiting sessions, one for each name.
std::vector<AgentSession> sessions(const std::vector<std::string>& names) {
    std::vector<AgentSession> result;
    for (const std::string& name : names)
        result.push_back(waitingSession(name, at(0)));
    return result;
}

class SessionListTest : public testing::Test {
  protected:
    SessionListTest() {
        window.resize(340, SessionList::largestHeight);
        list.setGeometry(0, 0, 340, SessionList::largestHeight);
        window.setPalette(Tokens::palette(ColorScheme::light));
        window.show();
        QApplication::setActiveWindow(&window);
    }

    [[nodiscard]] std::vector<std::string> shown() const {
        std::vector<std::string> names;
        for (const SessionRow* const row : list.rows())
            names.push_back(row->session().sessionID);
        return names;
    }

    [[nodiscard]] std::string focused() const {
        for (const SessionRow* const row : list.rows())
            if (row->hasFocus()) return row->session().sessionID;
        return {};
    }

    QWidget window;
    SessionList list{[](const AgentSession&) {}, &window};
};

TEST_F(SessionListTest, reportsWhetherRowsWereAddedMovedOrRemoved) {
    EXPECT_TRUE(list.setSessions(sessions({"a", "b"}), at(0)));
    EXPECT_FALSE(list.setSessions(sessions({"a", "b"}), at(1)));
    EXPECT_TRUE(list.setSessions(sessions({"b", "a"}), at(1)));
    EXPECT_TRUE(list.setSessions(sessions({"a"}), at(1)));
    EXPECT_TRUE(list.setSessions({}, at(1)));
    EXPECT_FALSE(list.setSessions({}, at(1)));
}

TEST_F(SessionListTest, aSessionKeepsItsRow) {
    list.setSessions(sessions({"a", "b"}), at(0));
    const SessionRow* const a = list.rows()[0];
    const SessionRow* const b = list.rows()[1];
    list.setSessions(sessions({"c", "b", "a"}), at(1));
    EXPECT_EQ(list.rows()[1], b);
    EXPECT_EQ(list.rows()[2], a);
    EXPECT_EQ(b->y(), SessionRow::rowHeight);
    EXPECT_EQ(a->y(), 2 * SessionRow::rowHeight);
}

TEST_F(SessionListTest, sessionsOfTwoAgentsMayHaveTheSameIdentifier) {
    std::vector<AgentSession> both{waitingSession("a", at(0)), waitingSession("a", at(0), AgentKind::codex)};
    list.setSessions(both, at(0));
    const SessionRow* const codex = list.rows()[1];
    both.erase(both.begin());
    list.setSessions(both, at(1));
    ASSERT_EQ(list.rows().size(), 1U);
    EXPECT_EQ(list.rows().front(), codex);
}

TEST_F(SessionListTest, wantsTheHeightOfItsRowsUpToSix) {
    EXPECT_EQ(list.wantedHeight(), 0);
    list.setSessions(sessions({"a", "b"}), at(0));
    EXPECT_EQ(list.wantedHeight(), 2 * SessionRow::rowHeight);
    list.setSessions(sessions({"a", "b", "c", "d", "e", "f", "g"}), at(0));
    EXPECT_EQ(list.wantedHeight(), 288);
    EXPECT_EQ(list.verticalScrollBar()->maximum(), SessionRow::rowHeight);
}

TEST_F(SessionListTest, theFocusEntersAtEitherEndAndStopsThere) {
    EXPECT_FALSE(list.moveFocus(1));
    list.setSessions(sessions({"a", "b", "c"}), at(0));
    EXPECT_TRUE(list.moveFocus(1));
    EXPECT_EQ(focused(), "a");
    EXPECT_FALSE(list.moveFocus(-1));
    EXPECT_EQ(focused(), "a");
    window.setFocus();
    EXPECT_TRUE(list.moveFocus(-1));
    EXPECT_EQ(focused(), "c");
    EXPECT_FALSE(list.moveFocus(1));
}

TEST_F(SessionListTest, theFocusMovesToTheRowThatReplacesARemovedOne) {
    list.setSessions(sessions({"a", "b", "c"}), at(0));
    list.rows()[1]->setFocus();
    list.setSessions(sessions({"a", "c"}), at(1));
    EXPECT_EQ(focused(), "c");
    list.setSessions(sessions({"a"}), at(2));
    EXPECT_EQ(focused(), "a");
    list.setSessions({}, at(3));
    EXPECT_EQ(focused(), "");
}

} // namespace
} // namespace corvane
