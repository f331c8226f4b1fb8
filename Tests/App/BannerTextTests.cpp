#include "App/Support/BannerViewsSupport.h"
#include "App/Support/DirectionMarks.h"
#include "App/Support/ToolTips.h"
#include "Model/AppModel.h"

#include <QAbstractButton>
#include <QFontMetricsF>

#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

using test::BannerViewsTest;
using test::doneSession;
using test::waitingSession;

TEST_F(BannerViewsTest, aLongSubtitleIsElidedInTheMiddleAndKeepsItsFullText) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/a-project-with-quite-a-long-name-for-a-folder-somewhere-deep";
    session.message = "Claude needs your permission to use mcp__a_server_with_a_long_name__and_a_tool";
    const auto banner = waitingBanner(session);
    render(*banner);
    const auto* const subtitle = banner->findChildren<LineLabel*>().at(1);
    const std::string shown = subtitle->shownText().toStdString();
    EXPECT_TRUE(shown.starts_with(test::firstStrongIsolate() + "a-proj")) << shown;
    EXPECT_TRUE(shown.ends_with("tool\u2069")) << shown;
    EXPECT_NE(shown.find("…"), std::string::npos);
    EXPECT_TRUE(subtitle->text().endsWith(QStringLiteral("and_a_tool")));
    EXPECT_LE(QFontMetricsF(subtitle->font()).horizontalAdvance(subtitle->shownText()), subtitle->width());
}

TEST_F(BannerViewsTest, aLongTitleAndADoneSubtitleAreElidedInTheMiddle) {
    const auto waiting = waitingBanner(waitingSession("s", start));
    render(*waiting);
    // No agent's name is long enough, so the letters are too large for the title to fit.
    auto* const title = waiting->findChildren<LineLabel*>().at(0);
    ASSERT_EQ(title->shownText(), title->text());
    QFont large = title->font();
    large.setPixelSize(40);
    title->setFont(large);
    AgentSession session = doneSession("s", start);
    session.cwd = "/w/a-project-with-quite-a-long-name-for-a-folder-somewhere-deep";
    const auto done = doneBanner(session);
    render(*done);
    const auto* const subtitle = done->findChildren<LineLabel*>().at(1);

    for (const LineLabel* const label : {static_cast<const LineLabel*>(title), subtitle}) {
        const QString shown = label->shownText();
        EXPECT_TRUE(shown.contains(QStringLiteral("…"))) << shown.toStdString();
        EXPECT_EQ(shown.left(3), label->text().left(3));
        EXPECT_EQ(shown.right(3), label->text().right(3));
        EXPECT_LE(QFontMetricsF(label->font()).horizontalAdvance(shown), label->width());
    }
}

using Spans = std::vector<std::pair<int, int>>;

/// The horizontal extent of each word in a picture of a line of text.
Spans words(const QImage& line) {
    constexpr int widestGap = 4; // between letters; a space is wider
    Spans result;
    for (int x = 0; x < line.width(); ++x) {
        bool hasInk = false;
        for (int y = 0; y < line.height(); ++y)
            hasInk = hasInk || line.pixelColor(x, y).alpha() > 60;
        if (!hasInk) continue;
        if (result.empty() || x - result.back().second > widestGap) result.emplace_back(x, x);
        result.back().second = x;
    }
    return result;
}

TEST_F(BannerViewsTest, aSubtitleReadsInItsFirstStrongDirection) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/متجر";
    const auto banner = waitingBanner(session);
    render(*banner);
    auto* const subtitle = banner->findChildren<LineLabel*>().at(1);
    ASSERT_EQ(subtitle->text().toStdString(), "متجر · wants to use Bash");

    // Read from right to left, the name comes first: the message is to its left, and the line still begins at
    // the left edge of the text.
    LineLabel message(QStringLiteral("wants to use Bash"), subtitle->font(), LineLabel::Emphasis::normal,
                      LineLabel::Truncation::none, nullptr);
    message.resize(message.sizeHint().width(), subtitle->height());
    const Spans expected = words(render(message));
    ASSERT_EQ(expected.size(), 4U);
    const Spans seen = words(render(*subtitle));
    ASSERT_GT(seen.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(seen[i].first, expected[i].first, 1) << i;
        EXPECT_NEAR(seen[i].second, expected[i].second, 1) << i;
    }
}

TEST_F(BannerViewsTest, aVeryLongMessageStaysCheap) {
    // The alert's text is truncated to a number of characters, but a single character can have any length,
    // and so can a folder's name.
    std::string marks = "e";
    for (int i = 0; i < 100'000; ++i)
        marks += "\u0301";
    AgentSession ofMarks = waitingSession("s", start);
    ofMarks.message = marks;
    AgentSession ofName = waitingSession("s", start);
    ofName.cwd = "/w/" + std::string(100'000, 'x') + "end";
    ofName.message.clear();
    for (const AgentSession& session : {ofMarks, ofName}) {
        const auto banner = waitingBanner(session);
        EXPECT_EQ(banner->accessibleName().size(), 4096);
        EXPECT_TRUE(banner->accessibleName().startsWith(QStringLiteral("Claude is waiting for you, ")));
        // Its length is never measured for the layout.
        EXPECT_EQ(banner->findChildren<LineLabel*>().at(1)->sizeHint().width(), 0);
    }
    const auto banner = waitingBanner(ofName);
    render(*banner);
    const QString shown = banner->findChildren<LineLabel*>().at(1)->shownText();
    EXPECT_TRUE(shown.startsWith(u'x') && shown.endsWith(QStringLiteral("xend"))) << shown.toStdString();
}

TEST_F(BannerViewsTest, anAccessibleNameIsNeverCutWithinACharacterBeyondTheBasicPlane) {
    for (const int padding : {0, 1}) {
        AgentSession session = waitingSession("s", start);
        session.cwd = "/w/" + std::string(static_cast<std::size_t>(padding), 'x');
        for (int i = 0; i < 4096; ++i)
            session.cwd += "😀";
        const QString name = waitingBanner(session)->accessibleName();
        EXPECT_TRUE(name.isValidUtf16());
        EXPECT_LE(name.size(), 4096);
        EXPECT_GE(name.size(), 4095);
    }
}

TEST_F(BannerViewsTest, aLineBreakInAProjectsNameStaysOnTheLine) {
    AgentSession session = doneSession("s", start);
    session.cwd = "/w/two\nlines";
    const auto banner = doneBanner(session);
    render(*banner);
    EXPECT_EQ(banner->findChildren<LineLabel*>().at(1)->shownText().toStdString(), "two lines");
}

TEST_F(BannerViewsTest, aProjectsNameCannotReverseTheMessage) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/ab" + test::rightToLeftOverride() + "cd";
    session.message = "run\u2069 it";
    const auto banner = waitingBanner(session);
    render(*banner);
    const auto* const shown = banner->findChildren<LineLabel*>().at(1);
    EXPECT_EQ(shown->shownText(), QString::fromUtf8("\u2068abcd\u2069 · \u2068run it\u2069"));
    EXPECT_EQ(shown->text(), QString::fromStdString("ab" + test::rightToLeftOverride() + "cd · run\u2069 it"))
        << "the announced text is unchanged";
}

TEST_F(BannerViewsTest, anInvisibleNameLeavesNoEmptySpace) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/" + test::rightToLeftOverride() + " ";
    session.message = "may I?";
    const auto withMessage = waitingBanner(session);
    render(*withMessage);
    EXPECT_EQ(withMessage->findChildren<LineLabel*>().at(1)->shownText(), QStringLiteral("may I?"));

    session.message.clear();
    const auto without = waitingBanner(session);
    render(*without);
    EXPECT_TRUE(without->findChildren<LineLabel*>().at(1)->isHidden());
    EXPECT_EQ(without->accessibleName(), QStringLiteral("Claude is waiting for you"));
    const QRect title = without->findChildren<LineLabel*>().at(0)->geometry();
    const QRect waited = without->findChildren<LineLabel*>().at(2)->geometry();
    EXPECT_EQ(waited.top(), title.bottom() + 1 + 2);

    AgentSession finished = doneSession("s", start);
    finished.cwd = session.cwd;
    const auto done = doneBanner(finished);
    render(*done);
    EXPECT_EQ(done->accessibleName(), QStringLiteral("Claude finished"));
    EXPECT_EQ(done->findChildren<LineLabel*>().at(0)->geometry().center().y(), done->rect().center().y());
}

TEST_F(BannerViewsTest, anElidedSubtitleIsWholeInItsToolTip) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/<img src=x>-" + std::string(80, 'a');
    session.message = "<b>may I?</b>";
    const auto banner = waitingBanner(session);
    render(*banner);
    EXPECT_EQ(test::toolTip(*banner->findChildren<LineLabel*>().at(1)),
              "<img src=x>-" + std::string(80, 'a') + " · <b>may I?</b>");
    EXPECT_EQ(test::toolTip(*banner->findChildren<LineLabel*>().at(0)), "");
}

TEST_F(BannerViewsTest, snoozesToolTipShowsItsDurationInAWindowThatIsNeverActive) {
    const auto banner = waitingBanner(waitingSession("s", start));
    banner->show();
    EXPECT_TRUE(banner->window()->testAttribute(Qt::WA_AlwaysShowToolTips));
    const auto buttons = banner->findChildren<QAbstractButton*>();
    EXPECT_EQ(test::toolTip(*buttons.at(1)), "For 5 minutes");
    EXPECT_EQ(AppModel::snoozeDuration, Seconds(5 * 60));
}

} // namespace
} // namespace corvane
