#include "App/Support/Sessions.h"
#include "Controls/Labels.h"
#include "Controls/PressGuard.h"
#include "MenuBar/SessionRow.h"
#include "Style/Tokens.h"
#include "Support/TestSupport.h"

#include <QAccessible>
#include <QImage>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::doneSession;
using test::waitingSession;

Date at(double seconds) {
    return Date(1'790'000'000, 0) + Seconds(seconds);
}

AgentSession runningSession() {
    AgentSession session = waitingSession("s1", at(0));
    session.status = SessionStatus::running();
    return session;
}

class SessionRowTest : public testing::Test {
  protected:
    SessionRowTest() {
        // The pointer has been elsewhere, so a press counts at once.
        PressGuard::setSurroundings(
            {[] { return QPoint(-1000, -1000); }, [] { return std::chrono::milliseconds(0); }});
    }
    ~SessionRowTest() override { PressGuard::setSurroundings({}); }
    SessionRowTest(const SessionRowTest&) = delete;
    SessionRowTest& operator=(const SessionRowTest&) = delete;

    SessionRow& row(const AgentSession& session, Date now) {
        row_ = std::make_unique<SessionRow>(
            session, now, [this](const AgentSession& tapped) { taps.push_back(tapped); }, nullptr);
        row_->setPalette(Tokens::palette(ColorScheme::light));
        row_->resize(340, row_->sizeHint().height());
        row_->move(200, 200); // not under the pointer, where presses are ignored at first
        row_->show();
        return *row_;
    }

    /// The labels' texts from top to bottom.
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<const LineLabel*> labels;
        for (const LineLabel* const label : row_->findChildren<LineLabel*>())
            labels.push_back(label);
        std::sort(labels.begin(), labels.end(), [](const auto* a, const auto* b) { return a->y() < b->y(); });
        std::vector<std::string> texts;
        for (const LineLabel* const label : labels)
            texts.push_back(label->text().toStdString());
        return texts;
    }

    std::vector<AgentSession> taps;

  private:
    std::unique_ptr<SessionRow> row_;
};

TEST_F(SessionRowTest, namesTheProjectAboveTheAgentAndItsStatus) {
    row(waitingSession("s1", at(0)), at(75));
    EXPECT_EQ(lines(), (std::vector<std::string>{"shop", "Claude \u00B7 Waiting for you \u00B7 1:15"}));
    row(doneSession("t1", at(0), AgentKind::codex), at(180));
    EXPECT_EQ(lines(), (std::vector<std::string>{"shop", "Codex \u00B7 Done 3 min ago"}));
    row(runningSession(), at(0));
    EXPECT_EQ(lines(), (std::vector<std::string>{"shop", "Claude \u00B7 Running"}));
}

TEST_F(SessionRowTest, aNewStateReplacesTheOldOne) {
    SessionRow& shown = row(waitingSession("s1", at(0)), at(5));
    shown.setSession(doneSession("s1", at(60)), at(130));
    EXPECT_EQ(lines().back(), "Claude \u00B7 Done 1 min ago");
    EXPECT_TRUE(shown.session().status.isDone());
    EXPECT_EQ(shown.spokenText().toStdString(), "shop, Claude, Done 1 min ago");
}

TEST_F(SessionRowTest, eachStatusHasADotOfItsOwn) {
    const Look light{ColorScheme::light};
    EXPECT_EQ(row(waitingSession("s1", at(0)), at(0)).dotColor(), Tokens::primary.color(light));
    EXPECT_EQ(row(doneSession("s1", at(0)), at(0)).dotColor(), Tokens::secondary.color(light));
    EXPECT_EQ(row(runningSession(), at(0)).dotColor(), Tokens::runningDot(light));
}

TEST_F(SessionRowTest, paintsTheDotWhereTheLineBegins) {
    SessionRow& shown = row(waitingSession("s1", at(0)), at(0));
    const QImage picture = shown.grab().toImage();
    EXPECT_EQ(picture.pixelColor(12 + 4, shown.height() / 2), shown.dotColor());
    shown.setLayoutDirection(Qt::RightToLeft);
    const QImage mirrored = shown.grab().toImage();
    EXPECT_EQ(mirrored.pixelColor(shown.width() - 1 - (12 + 4), shown.height() / 2), shown.dotColor());
}

TEST_F(SessionRowTest, clickAndReturnEmitTheSessionAsLastSet) {
    SessionRow& shown = row(waitingSession("s1", at(0)), at(0));
    AgentSession moved = waitingSession("s1", at(0));
    moved.cwd = "/w/other";
    shown.setSession(moved, at(1));
    QTest::mouseClick(&shown, Qt::LeftButton);
    QTest::keyClick(&shown, Qt::Key_Return);
    EXPECT_EQ(taps, (std::vector<AgentSession>{moved, moved}));
}

TEST_F(SessionRowTest, assistiveTechnologyFindsOneButtonWithoutParts) {
    QAccessible::setActive(true);
    SessionRow& shown = row(waitingSession("s1", at(0)), at(61));
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&shown);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->childCount(), 0);
    EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), "shop, Claude, Waiting for you \u00B7 1:01");
    ASSERT_NE(accessible->actionInterface(), nullptr);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(taps.size(), 1U);
    QAccessible::setActive(false);
}

} // namespace
} // namespace corvane
