#include "SessionSupport.h"
#include "Sessions/AlertText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstddef>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::at;

AgentSession sessionWith(SessionStatus status, std::string message = {},
                         AgentKind agent = AgentKind::claude) {
    AgentSession session;
    session.agent = agent;
    session.sessionID = "s1";
    session.cwd = "/w/shop";
    session.message = std::move(message);
    session.status = status;
    return session;
}

const SessionStatus forPermission = SessionStatus::waiting(EventKind::needsPermission, at(0));
const SessionStatus forInput = SessionStatus::waiting(EventKind::needsInput, at(0));

std::string repeated(std::string_view piece, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += piece;
    return result;
}

TEST(AlertText, isEqualOnlyWithBothLinesEqual) {
    EXPECT_EQ((AlertText{"a", "b"}), (AlertText{"a", "b"}));
    EXPECT_NE((AlertText{"a", "b"}), (AlertText{"a", "c"}));
    EXPECT_NE((AlertText{"a", "b"}), (AlertText{"c", "b"}));
}

TEST(AlertText, waitingNamesWhatTheAgentWantsToUse) {
    const AgentSession session = sessionWith(forPermission, "Claude needs your permission to use Write");
    EXPECT_EQ(AlertText::waiting(session),
              (AlertText{"Claude is waiting for you", "shop \u00B7 wants to use Write"}));
}

TEST(AlertText, waitingForAReplySaysSo) {
    EXPECT_EQ(AlertText::waiting(sessionWith(forInput, "Which colour?")),
              (AlertText{"Claude is waiting for your reply", "shop \u00B7 Which colour?"}));
    EXPECT_EQ(AlertText::waiting(sessionWith(forInput, "", AgentKind::codex)),
              (AlertText{"Codex is waiting for your reply", "shop"}));
}

TEST(AlertText, waitingOfASessionThatDoesNotWaitIsTheGeneralText) {
    for (const SessionStatus& status :
         {SessionStatus::running(), SessionStatus::done(at(0)), forPermission}) {
        EXPECT_EQ(AlertText::waiting(sessionWith(status, "", AgentKind::codex)),
                  (AlertText{"Codex is waiting for you", "shop"}));
    }
}

TEST(AlertText, waitingLeavesAGenericPromptOut) {
    for (const char* message :
         {"Claude is waiting for your input", "WAITING FOR YOUR INPUT", "Waiting for Your Input...",
          "first line\nis wAiTiNg for your input, still"}) {
        EXPECT_EQ(AlertText::waiting(sessionWith(forInput, message)).subtitle, "shop") << message;
    }
}

TEST(AlertText, doneShowsNoMessage) {
    const SessionStatus done = SessionStatus::done(at(0));
    EXPECT_EQ(AlertText::done(sessionWith(done, "All tests pass.")), (AlertText{"Claude finished", "shop"}));
    EXPECT_EQ(AlertText::done(sessionWith(done, "x", AgentKind::codex)),
              (AlertText{"Codex finished", "shop"}));
}

TEST(AlertText, subtitlesShowTheWholeDirectoryIfItHasNoName) {
    AgentSession session = sessionWith(forPermission, "message");
    session.cwd = "/";
    EXPECT_EQ(AlertText::waiting(session).subtitle, "/ \u00B7 message");
    session.cwd = "";
    EXPECT_EQ(AlertText::waiting(session).subtitle, " \u00B7 message");
    EXPECT_EQ(AlertText::done(session).subtitle, "");
}

TEST(AlertText, plainTrimsUnicodeWhiteSpaceAtBothEnds) {
    EXPECT_EQ(AlertText::plain(" \t\r\n\u00A0\u2003\u3000text \u2028\u0085\v\f"), "text");
    EXPECT_EQ(AlertText::plain(" \n\u00A0 "), "");
    EXPECT_EQ(AlertText::plain(""), "");
    EXPECT_EQ(AlertText::plain(" two  words "), "two  words");
}

TEST(AlertText, plainKeepsAllThatAPermissionPromptNames) {
    EXPECT_EQ(AlertText::plain("\n Claude needs your permission to use Bash \n"), "wants to use Bash");
    const std::string tool = "mcp__" + std::string(200, 'x') + "\nand more";
    EXPECT_EQ(AlertText::plain("Claude needs your permission to use " + tool), "wants to use " + tool);
    EXPECT_EQ(AlertText::plain("Claude needs your permission to use waiting for your input"),
              "wants to use waiting for your input");
}

TEST(AlertText, plainTakesOnlyTheExactPermissionPrompt) {
    for (const char* text :
         {"claude needs your permission to use Bash", "Claude needs your permission to use",
          "So Claude needs your permission to use Bash", "Claude needs your permission to useBash",
          "Codex needs your permission to use Bash"}) {
        EXPECT_EQ(AlertText::plain(text), text);
    }
    // What follows the prefix is trimmed, including the prefix's own space.
    EXPECT_EQ(AlertText::plain("Claude needs your permission to use   "),
              "Claude needs your permission to use");
}

TEST(AlertText, plainFindsTheGenericPromptWhateverTheLocale) {
    // A Turkish locale would fold "I" to a dotless letter.
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "tr_TR.UTF-8");
    EXPECT_EQ(AlertText::plain("WAITING FOR YOUR INPUT"), "");
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(AlertText::plain("wait\u0131ng for your input"), "wait\u0131ng for your input");
    EXPECT_EQ(AlertText::plain("waiting  for your input"), "waiting  for your input");
    EXPECT_EQ(AlertText::plain("waiting for your inpu"), "waiting for your inpu");
}

TEST(AlertText, plainTakesTheFirstLineOfTheTrimmedText) {
    EXPECT_EQ(AlertText::plain("one\ntwo\nthree"), "one");
    EXPECT_EQ(AlertText::plain("\nsecond\nthird"), "second");
    EXPECT_EQ(AlertText::plain("one \n two"), "one ");
    EXPECT_EQ(AlertText::plain("one\rtwo"), "one\rtwo");
    EXPECT_EQ(AlertText::plain("one\r\ntwo"), "one\r");
    EXPECT_EQ(AlertText::plain("one\u2028two"), "one\u2028two");
}

TEST(AlertText, plainKeepsNinetyCharactersAndCutsNinetyOneAfterEightyNine) {
    EXPECT_EQ(AlertText::plain(std::string(89, 'x')), std::string(89, 'x'));
    EXPECT_EQ(AlertText::plain(std::string(90, 'x')), std::string(90, 'x'));
    EXPECT_EQ(AlertText::plain(std::string(91, 'x')), std::string(89, 'x') + "\u2026");
    EXPECT_EQ(AlertText::plain(std::string(5'000, 'x')), std::string(89, 'x') + "\u2026");
    EXPECT_EQ(AlertText::plain(std::string(90, 'x') + "\n" + std::string(90, 'y')), std::string(90, 'x'));
}

TEST(AlertText, plainCountsCharactersAsUsersDo) {
    const std::string_view characters[] = {
        "\u00E9",                                                                 // e with acute, composed
        "e\u0301",                                                                // the same, decomposed
        "\u0E01\u0E33",                                                           // Thai ko kai with sara am
        "\u0BA8\u0BBF",                                                           // Tamil ni
        "\u0939\u0941",                                                           // Devanagari hu
        "\U0001F1EB\U0001F1F7",                                                   // a flag
        "\U0001F469\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466",             // a family
        "\U0001F44B\U0001F3FD",                                                   // a hand with a skin colour
        "\U0001F3F4\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F", // the flag of Scotland
        "\uAC00",                                                                 // Hangul
        "\u1100\u1161\u11A8",                                                     // Hangul in parts
    };
    for (const std::string_view character : characters) {
        EXPECT_EQ(AlertText::plain(repeated(character, 90)), repeated(character, 90)) << character;
        EXPECT_EQ(AlertText::plain(repeated(character, 91)), repeated(character, 89) + "\u2026") << character;
    }
}

TEST(AlertText, plainSurvivesBytesThatAreNotUtf8) {
    EXPECT_EQ(AlertText::plain("\xFF"), "\xFF");
    EXPECT_EQ(AlertText::plain(repeated("\xFF", 91)), repeated("\xFF", 89) + "\u2026");
    EXPECT_EQ(AlertText::plain("\xE2\x80"), "\xE2\x80");
}

TEST(AlertText, clockCutsToWholeSecondsAndPads) {
    const std::pair<double, const char*> expected[] = {
        {0, "0:00"},          {7, "0:07"},           {59.9, "0:59"},         {60, "1:00"},
        {750, "12:30"},       {3599, "59:59"},       {3599.999, "59:59"},    {3600, "1:00:00"},
        {3909, "1:05:09"},    {-5, "0:00"},          {-0.5, "0:00"},         {-99'999, "0:00"},
        {36'000, "10:00:00"}, {359'999, "99:59:59"}, {360'000, "100:00:00"}, {1e9, "277777:46:40"},
    };
    for (const auto& [seconds, text] : expected)
        EXPECT_EQ(AlertText::clock(Seconds(seconds)), text) << seconds;
}

TEST(AlertText, clockSurvivesAnyFiniteTime) {
    EXPECT_EQ(AlertText::clock(Seconds(-1e300)), "0:00");
    EXPECT_EQ(AlertText::clock(Seconds(1e300)), AlertText::clock(Seconds(0x1p62)));
}

TEST(AlertText, statusLineOfARunningSession) {
    EXPECT_EQ(AlertText::statusLine(sessionWith(SessionStatus::running()), at(99)), "Running");
}

TEST(AlertText, statusLineOfADoneSessionCountsWholeMinutes) {
    const AgentSession session = sessionWith(SessionStatus::done(at(0)));
    const std::pair<double, const char*> expected[] = {
        {0, "Done just now"},       {59, "Done just now"},     {59.999'999'999, "Done just now"},
        {60, "Done 1 min ago"},     {119.9, "Done 1 min ago"}, {120, "Done 2 min ago"},
        {7500, "Done 125 min ago"}, {-600, "Done just now"},
    };
    for (const auto& [seconds, line] : expected)
        EXPECT_EQ(AlertText::statusLine(session, at(seconds)), line) << seconds;
}

TEST(AlertText, statusLineOfAWaitingSessionShowsTheClock) {
    EXPECT_EQ(AlertText::statusLine(sessionWith(forInput), at(750)), "Waiting for your reply \u00B7 12:30");
    EXPECT_EQ(AlertText::statusLine(sessionWith(forPermission), at(3600)), "Waiting for you \u00B7 1:00:00");
    EXPECT_EQ(AlertText::statusLine(sessionWith(forPermission), at(-60)), "Waiting for you \u00B7 0:00");
}

/// Every phrase in brackets.
std::string bracketed(const Phrase& phrase) {
    return "[" + std::string(phrase.key) + "]";
}

TEST(AlertText, everyWordIsTakenFromTheWordsGiven) {
    AgentSession session = sessionWith(forPermission);
    session.message = "Claude needs your permission to use Bash";
    session.cwd = "/w/shop";
    const AlertText waiting = AlertText::waiting(session, bracketed);
    EXPECT_EQ(waiting.title, "[Claude is waiting for you]");
    EXPECT_EQ(waiting.subtitle, "shop \u00B7 [wants to use Bash]");
    session.status = forInput;
    EXPECT_EQ(AlertText::waiting(session, bracketed).title, "[Claude is waiting for your reply]");
    EXPECT_EQ(AlertText::done(session, bracketed).title, "[Claude finished]");
    EXPECT_EQ(AlertText::done(session, bracketed).subtitle, "shop");
    EXPECT_EQ(AlertText::statusLine(session, at(7), bracketed), "[Waiting for your reply] \u00B7 0:07");
    session.status = forPermission;
    EXPECT_EQ(AlertText::statusLine(session, at(7), bracketed), "[Waiting for you] \u00B7 0:07");
    session.status = SessionStatus::running();
    EXPECT_EQ(AlertText::statusLine(session, at(7), bracketed), "[Running]");
    session.status = SessionStatus::done(at(0));
    EXPECT_EQ(AlertText::statusLine(session, at(7), bracketed), "[Done just now]");
    EXPECT_EQ(AlertText::statusLine(session, at(120), bracketed), "[Done 2 min ago]");
}

TEST(AlertText, anAgentsOwnWordsAreNotTranslated) {
    EXPECT_EQ(AlertText::plain("Which colour?", bracketed), "Which colour?");
}

TEST(AlertText, aMessageOfOrdinarySizeIsKeptAsItIs) {
    for (const std::size_t size : {0U, 1U, 1000U, 16'384U}) {
        const std::string message = std::string(size, ' ');
        EXPECT_EQ(AlertText::kept(message), message) << size;
    }
}

TEST(AlertText, aShortenedMessageGivesTheSameAlertText) {
    const std::string filling(100'000, 'x');
    std::string accents;
    for (int i = 0; i < 20'000; ++i)
        accents += "\u00E9\U0001F600";
    const std::string wide(40'000, ' ');
    const std::vector<std::string> messages{
        filling,
        accents,
        wide,
        wide + "short" + wide,
        wide + "short  \n" + filling,
        "short line\n" + filling,
        "\n\nshort  \t\n" + wide + "x",
        std::string(90, 'y') + "\n" + filling,
        std::string(91, 'y') + "\n" + filling,
        "ends with a space " + wide + "\n" + filling,
        "Claude is waiting for your input\n" + filling,
        filling + "\n" + accents + "WAITING for Your Input",
        "Claude needs your permission to use Bash" + wide,
        wide + "Claude needs your permission to use ",
        filling + "\xFF\xFE",
        std::string(50'000, '\x80'),
    };
    for (const std::string& message : messages) {
        const std::string kept = AlertText::kept(message);
        EXPECT_EQ(AlertText::plain(kept), AlertText::plain(message)) << message.substr(0, 60);
        EXPECT_LE(kept.size(), AlertText::longestKept + 8);
        EXPECT_EQ(AlertText::kept(kept).size(), kept.size());
    }
}

TEST(AlertText, sixteenKibibytesAreKeptUnchanged) {
    const std::string longest(16'384, 'x');
    EXPECT_EQ(AlertText::kept(longest), longest);
    EXPECT_EQ(AlertText::kept(longest + "x"), longest + "\u2026");
}

TEST(AlertText, bothEndsOfALongNameInAPermissionPromptAreKept) {
    const std::string name = "Bash(" + std::string(1'000'000, 'x') + ") at the end";
    const std::string kept = AlertText::kept("  Claude needs your permission to use " + name + "\n");
    EXPECT_LE(kept.size(), AlertText::longestKept + 8);
    const std::string plain = AlertText::plain(kept);
    EXPECT_TRUE(plain.starts_with("wants to use Bash(" + std::string(4'096, 'x'))) << "all that is spoken";
    EXPECT_TRUE(plain.ends_with("x) at the end"));
    EXPECT_NE(plain.find("x\u2026x"), std::string::npos);
}

} // namespace
} // namespace corvane
