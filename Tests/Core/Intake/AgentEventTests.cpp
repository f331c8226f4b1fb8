#include "Intake/AgentEvent.h"
#include "Support/TestSupport.h"
#include "Support/Text.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using corvane::AgentEvent;
using corvane::AgentKind;
using corvane::Date;
using corvane::EventKind;

constexpr Date fileDate(1'700'000'000, 123'456'789);

std::optional<AgentEvent> parse(std::string_view text) {
    return AgentEvent::parse(text, fileDate);
}

std::optional<AgentEvent> parseClaude(std::string_view payload) {
    return parse("corvane-event 1\nsource=claude\nterm=Apple_Terminal\nbundle=com.apple.Terminal\n---\n" +
                 std::string(payload));
}

std::optional<AgentEvent> parseCodex(std::string_view payload) {
    return parse("corvane-event 1\nsource=codex\nterm=WezTerm\nbundle=\n---\n" + std::string(payload));
}

constexpr std::string_view stop = R"({"hook_event_name":"Stop","session_id":"s1","cwd":"/w/shop"})";

std::optional<AgentEvent> parseHeader(std::string_view header) {
    return parse(std::string(header) + "---\n" + std::string(stop));
}

TEST(AgentEvent, takesItsFieldsInTheirOrderAndComparesAllOfThem) {
    const AgentEvent event{AgentKind::codex, EventKind::finished, "id", "/w", "text", "bundle", "term",
                           fileDate};
    std::vector<AgentEvent> others(8, event);
    others[0].source = AgentKind::claude;
    others[1].kind = EventKind::ended;
    others[2].sessionID = "";
    others[3].cwd = "";
    others[4].message = "";
    others[5].terminalBundleID = "";
    others[6].terminalProgram = "";
    others[7].date = Date(1'700'000'000, 123'456'788);
    for (const AgentEvent& other : others)
        EXPECT_NE(other, event);
    EXPECT_EQ(AgentEvent(event), event);
}

TEST(AgentEvent, namesTheProjectByTheLastPathComponent) {
    const auto repoName = [](std::string cwd) {
        AgentEvent event;
        event.cwd = std::move(cwd);
        return event.repoName();
    };
    EXPECT_EQ(repoName("/Users/you/my-project"), "my-project");
    EXPECT_EQ(repoName("/"), "/");
    EXPECT_EQ(repoName(""), "");
    EXPECT_EQ(repoName("shop"), "shop");
    EXPECT_EQ(repoName("/w/shop/"), "shop");
    EXPECT_EQ(repoName("//"), "//");
    EXPECT_EQ(repoName("/w/.."), "..");
    EXPECT_EQ(repoName("/w/Läden & Söhne"), "Läden & Söhne");
}

TEST(AgentEvent, readsAFileAsTheHookWritesIt) {
    EXPECT_EQ(
        parse(
            "corvane-event 1\nsource=codex\nterm=iTerm.app\nbundle=com.googlecode.iterm2\n---\n"
            R"({"type":"agent-turn-complete","thread-id":"t","cwd":"/w/shop","last-assistant-message":"Done."})"
            "\n"),
        (AgentEvent{AgentKind::codex, EventKind::finished, "t", "/w/shop", "Done.", "com.googlecode.iterm2",
                    "iTerm.app", fileDate}));
}

TEST(AgentEvent, toleratesSpacesAndTabsAroundTheMagicLineOnly) {
    EXPECT_TRUE(parseHeader(" corvane-event 1\t\nsource=claude\n"));
    EXPECT_TRUE(parseHeader("\t \tcorvane-event 1  \nsource=claude\n"));
    for (const std::string_view first :
         {"corvane-event 2", "corvane-event 1\r", "corvane-event 10", "corvane-event  1", "Corvane-event 1",
          "corvane-event", "", "\vcorvane-event 1", "\302\240corvane-event 1",
          "\357\273\277corvane-event 1"}) {
        EXPECT_FALSE(parseHeader(std::string(first) + "\nsource=claude\n")) << first;
    }
    EXPECT_FALSE(parseHeader("\ncorvane-event 1\nsource=claude\n"));
    EXPECT_FALSE(parse(""));
    EXPECT_FALSE(parse("\n"));
    EXPECT_FALSE(parse("corvane-event 1"));
}

TEST(AgentEvent, stripsNoCarriageReturn) {
    EXPECT_FALSE(parse("corvane-event 1\r\nsource=claude\r\n---\r\n" + std::string(stop) + "\r\n"));
    EXPECT_FALSE(parseHeader("corvane-event 1\nsource=claude\r\n"));
    EXPECT_TRUE(parse("corvane-event 1\nsource=claude\n---\n\r\n" + std::string(stop) + "\r\n"))
        << "JSON itself allows them around the object";
}

TEST(AgentEvent, endsTheHeaderAtTheFirstExactSeparator) {
    for (const std::string_view separator : {" ---", "---\r", "--- ", "----", "--", "\t---"}) {
        EXPECT_FALSE(
            parse("corvane-event 1\nsource=claude\n" + std::string(separator) + "\n" + std::string(stop)))
            << separator;
    }
    EXPECT_FALSE(parse("corvane-event 1\nsource=claude\n" + std::string(stop)));
    EXPECT_FALSE(parse("---\ncorvane-event 1\nsource=claude\n---\n" + std::string(stop)));
    EXPECT_FALSE(parse("corvane-event 1\n---\nsource=claude\n---\n" + std::string(stop)));
    EXPECT_FALSE(parse("corvane-event 1\nsource=claude\n---\n---\n" + std::string(stop)))
        << "a second separator belongs to the payload";
}

TEST(AgentEvent, needsAKnownSource) {
    EXPECT_TRUE(parseHeader("corvane-event 1\nsource=claude\n"));
    for (const std::string_view header :
         {"", "term=x\n", "source\n", "source=\n", "source=Claude\n", "source= claude\n", "source=claude \n",
          " source=claude\n", "source =claude\n", "source=claude=x\n", "source=gemini\n", "=claude\n"}) {
        EXPECT_FALSE(parseHeader("corvane-event 1\n" + std::string(header))) << header;
    }
}

TEST(AgentEvent, takesTheLastOfRepeatedHeaders) {
    const auto event =
        parseHeader("corvane-event 1\nsource=codex\nterm=a\nsource=claude\nterm=b\nbundle=c\nbundle=\n");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->source, AgentKind::claude);
    EXPECT_EQ(event->terminalProgram, "b");
    EXPECT_EQ(event->terminalBundleID, "");
    EXPECT_FALSE(parseHeader("corvane-event 1\nsource=claude\nsource=nobody\n"));
}

TEST(AgentEvent, splitsAHeaderLineAtItsFirstEqualsSignAndTrimsNothing) {
    const auto event = parseHeader(
        "corvane-event 1\nno sign here\n\ncolour=blue\nterm = x\nterm= a=b= \nsource=claude\nbundle=\tc\r\n");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->terminalProgram, " a=b= ");
    EXPECT_EQ(event->terminalBundleID, "\tc\r");
}

TEST(AgentEvent, hasEmptyTerminalFieldsIfTheHeaderHasNone) {
    const auto event = parseHeader("corvane-event 1\nsource=claude\n");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->terminalProgram, "");
    EXPECT_EQ(event->terminalBundleID, "");
}

TEST(AgentEvent, needsAnObjectAsPayload) {
    for (const std::string_view payload :
         {"", "\n", "[]", R"([{"hook_event_name":"Stop"}])", R"("Stop")", "1", "true", "null", "{",
          R"({"a":1}{"hook_event_name":"Stop"})"}) {
        EXPECT_FALSE(parseClaude(payload)) << payload;
        EXPECT_FALSE(parseCodex(payload)) << payload;
    }
    EXPECT_FALSE(parse("corvane-event 1\nsource=codex\n---\n"));
    EXPECT_FALSE(parse("corvane-event 1\nsource=codex\n---"));
}

TEST(AgentEvent, readsAPayloadOfSeveralLines) {
    const auto event = parseClaude("\n{\n  \"hook_event_name\": \"Stop\",\n  \"cwd\":\n\"/w/shop\"\n}\n\n");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->cwd, "/w/shop");
}

TEST(AgentEvent, isRefusedWithWrongUtf8Anywhere) {
    EXPECT_FALSE(parseHeader("corvane-event 1\nsource=claude\nterm=\xFF\n"));
    EXPECT_FALSE(parseHeader("corvane-event 1\nsource=claude\nother=\xED\xA0\x80\n"));
    EXPECT_FALSE(parseClaude("{\"hook_event_name\":\"Stop\",\"other\":\"\xC0\xAF\"}"));
    EXPECT_FALSE(parseClaude("{\"hook_event_name\":\"Stop\",\"\xE2\x82\":1}"));
    EXPECT_TRUE(parseHeader("corvane-event 1\nsource=claude\nterm=Größe 😀\n"));
}

TEST(AgentEvent, isRefusedWithAByteOrderMark) {
    EXPECT_FALSE(parseClaude("\xEF\xBB\xBF" + std::string(stop)));
    EXPECT_FALSE(parse("\xEF\xBB\xBF"
                       "corvane-event 1\nsource=claude\n---\n" +
                       std::string(stop)));
}

TEST(AgentEvent, takesItsDateFromTheFileWhateverThePayloadSays) {
    const auto event =
        parseClaude(R"({"hook_event_name":"Stop","date":1,"timestamp":"1999-01-01T00:00:00Z"})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->date, fileDate);
}

struct ClaudeRow {
    std::string_view payload;
    std::optional<EventKind> kind;
};

TEST(AgentEvent, mapsClaudeCodesEventsToKinds) {
    const EventKind needsPermission = EventKind::needsPermission;
    const EventKind needsInput = EventKind::needsInput;
    const std::vector<ClaudeRow> rows{
        {R"({"hook_event_name":"Notification","notification_type":"permission_prompt","message":"hello"})",
         needsPermission},
        {R"({"hook_event_name":"Notification","notification_type":"permission_prompt"})", needsPermission},
        {R"({"hook_event_name":"Notification","notification_type":"idle_prompt","message":"permission"})",
         needsInput},
        {R"({"hook_event_name":"Notification","notification_type":"agent_needs_input"})", std::nullopt},
        {R"({"hook_event_name":"Notification","notification_type":""})", std::nullopt},
        {R"({"hook_event_name":"Notification","notification_type":"Permission_prompt"})", std::nullopt},
        {R"({"hook_event_name":"Notification","message":"Claude needs your permission to use Bash"})",
         needsPermission},
        {R"({"hook_event_name":"Notification","message":"PERMISSION"})", needsPermission},
        {R"({"hook_event_name":"Notification","message":"Permission?"})", needsPermission},
        {R"({"hook_event_name":"Notification","message":"two permissions"})", needsPermission},
        {R"({"hook_event_name":"Notification","message":"perm ission"})", needsInput},
        {R"({"hook_event_name":"Notification","message":"Claude is waiting for your input"})", needsInput},
        {R"({"hook_event_name":"Notification","message":""})", needsInput},
        {R"({"hook_event_name":"Notification"})", needsInput},
        {R"({"hook_event_name":"Notification","message":["permission"]})", needsInput},
        {R"({"hook_event_name":"Notification","notification_type":null,"message":"permission"})",
         needsPermission},
        {R"({"hook_event_name":"Notification","notification_type":7})", needsInput},
        {R"({"hook_event_name":"Stop"})", EventKind::finished},
        {R"({"hook_event_name":"UserPromptSubmit"})", EventKind::running},
        {R"({"hook_event_name":"PostToolUse"})", EventKind::running},
        {R"({"hook_event_name":"SessionEnd"})", EventKind::ended},
        {R"({"hook_event_name":"PreToolUse"})", std::nullopt},
        {R"({"hook_event_name":"stop"})", std::nullopt},
        {R"({"hook_event_name":" Stop"})", std::nullopt},
        {R"({"hook_event_name":""})", std::nullopt},
        {R"({"hook_event_name":["Stop"]})", std::nullopt},
        {R"({})", std::nullopt},
        {R"({"type":"agent-turn-complete"})", std::nullopt},
        {R"({"nested":{"hook_event_name":"Stop"}})", std::nullopt},
        {R"({"hook_event_name":"Notification","nested":{"notification_type":"other"}})", needsInput},
    };
    for (const ClaudeRow& row : rows) {
        const auto event = parseClaude(row.payload);
        ASSERT_EQ(event.has_value(), row.kind.has_value()) << row.payload;
        if (event) {
            EXPECT_EQ(event->kind, *row.kind) << row.payload;
        }
    }
}

TEST(AgentEvent, fillsAllFieldsFromClaudeCode) {
    EXPECT_EQ(parseClaude(R"({"session_id":"s1","cwd":"/w/shop","message":"  Hi\n\u00e4 \ud83d\ude00 ",)"
                          R"("hook_event_name":"Notification","notification_type":"idle_prompt"})"),
              (AgentEvent{AgentKind::claude, EventKind::needsInput, "s1", "/w/shop", "  Hi\nä 😀 ",
                          "com.apple.Terminal", "Apple_Terminal", fileDate}));
}

TEST(AgentEvent, fallsBackToTheFolderWithoutASessionIdentifier) {
    const auto sessionID = [](std::string_view members) {
        const auto event = parseClaude(R"({"hook_event_name":"Stop")" + std::string(members) + "}");
        return event ? event->sessionID : "no event";
    };
    EXPECT_EQ(sessionID(R"(,"cwd":"/w","session_id":"s")"), "s");
    EXPECT_EQ(sessionID(R"(,"cwd":"/w")"), "/w");
    EXPECT_EQ(sessionID(R"(,"cwd":"/w","session_id":12)"), "/w");
    EXPECT_EQ(sessionID(R"(,"cwd":"/w","session_id":null)"), "/w");
    EXPECT_EQ(sessionID(R"(,"cwd":"/w","session_id":"")"), "");
    EXPECT_EQ(sessionID(R"(,"cwd":{"path":"/w"})"), "");
    EXPECT_EQ(sessionID(""), "");
}

TEST(AgentEvent, readsCodexTurnsOnly) {
    EXPECT_EQ(parseCodex(R"({"type":"agent-turn-complete"})"),
              (AgentEvent{AgentKind::codex, EventKind::finished, "", "", "", "", "WezTerm", fileDate}));
    for (const std::string_view payload :
         {R"({})", R"({"type":"approval-requested"})", R"({"type":"Agent-turn-complete"})", R"({"type":1})",
          R"({"hook_event_name":"Stop"})", R"({"type":["agent-turn-complete"]})"}) {
        EXPECT_FALSE(parseCodex(payload)) << payload;
    }
}

TEST(AgentEvent, fillsAllFieldsFromCodex) {
    const auto event = parseCodex(
        R"({"type":"agent-turn-complete","thread-id":"t1","cwd":"/w","last-assistant-message":"Fixed","message":"no"})");
    EXPECT_EQ(event, (AgentEvent{AgentKind::codex, EventKind::finished, "t1", "/w", "Fixed", "", "WezTerm",
                                 fileDate}));
    const auto withoutThread =
        parseCodex(R"({"type":"agent-turn-complete","thread-id":5,"cwd":"/w","session_id":"s"})");
    ASSERT_TRUE(withoutThread);
    EXPECT_EQ(withoutThread->sessionID, "/w");
    EXPECT_EQ(withoutThread->message, "");
}

TEST(AgentEvent, keepsAnEmptyThreadIdentifierOfCodex) {
    const auto event = parseCodex(R"({"type":"agent-turn-complete","thread-id":"","cwd":"/w"})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->sessionID, "") << "only a missing one is replaced by the folder";
    EXPECT_EQ(event->cwd, "/w");
}

TEST(AgentEvent, takesTheLastOfDuplicateNames) {
    const auto event = parseClaude(
        R"({"hook_event_name":"Stop","cwd":"/a","session_id":"x","cwd":"/b","session_id":3,"hook_event_name":"SessionEnd"})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->kind, EventKind::ended);
    EXPECT_EQ(event->cwd, "/b");
    EXPECT_EQ(event->sessionID, "/b") << "a last value that is not a string counts as none";
}

TEST(AgentEvent, ignoresTheThreadInWhichCodexTitlesATask) {
    const std::string_view shape = "Generate a concise, single-line task title of at most 36 characters.";
    const auto hasEvent = [](std::string_view messages) {
        return parseCodex(R"({"type":"agent-turn-complete","thread-id":"t","input-messages":)" +
                          std::string(messages) + "}")
            .has_value();
    };
    const auto quoted = [](std::string_view text) { return "[\"" + std::string(text) + "\"]"; };
    EXPECT_FALSE(hasEvent(quoted(std::string(shape) + R"(\n\nUser prompt:\nmend the test)")));

    // What users may type themselves.
    EXPECT_TRUE(hasEvent(quoted(shape)));
    EXPECT_TRUE(hasEvent(quoted("Explain: " + std::string(shape) + R"(\n\nUser prompt:\nmend the test)")));
    EXPECT_TRUE(
        hasEvent(R"(["mend the test",)" + quoted(std::string(shape) + R"(\n\nUser prompt:\nx)").substr(1)));
    EXPECT_TRUE(hasEvent(R"(["User prompt:"])"));
    EXPECT_TRUE(hasEvent("[]"));
    EXPECT_TRUE(hasEvent(R"([7])"));
    EXPECT_TRUE(hasEvent("null"));
}

TEST(AgentEvent, isNotLostToHalfOfASurrogatePair) {
    const auto event = parseClaude(
        R"({"hook_event_name":"Notification","notification_type":"idle_prompt","cwd":"/w/\ud83d",)"
        R"("session_id":"s","message":"cut \ud83d","tool":{"\udc00":["\ud800\ue000"]}})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->message, "cut \uFFFD");
    EXPECT_EQ(event->cwd, "/w/\uFFFD");
    EXPECT_TRUE(parseCodex(R"({"type":"agent-turn-complete","input-messages":["\ude00"]})"));
}

TEST(AgentEvent, namesOfAnOrdinaryLengthAreNotCut) {
    AgentEvent event;
    event.cwd = "/" + std::string(AgentEvent::longestName - 2, 'x') + "/";
    event.sessionID = std::string(AgentEvent::longestName, 's');
    event.terminalProgram = std::string(AgentEvent::longestName, 't');
    event.terminalBundleID = "com.example.terminal";
    AgentEvent cut = event;
    cut.cutNames();
    EXPECT_EQ(cut, event);
}

TEST(AgentEvent, theEndOfALongFolderIsKeptWhichIsNoPathAndHasTheSameName) {
    const std::string deep = [] {
        std::string path;
        while (path.size() < 5'000'000)
            path += "/deep";
        return path;
    }();
    for (const std::string& folder :
         {deep + "/shop", deep + "/w/shop//", "/w/shop" + std::string(5'000'000, '/')}) {
        AgentEvent event;
        event.cwd = folder;
        event.cutNames();
        EXPECT_LE(event.cwd.size(), AgentEvent::longestName + 3);
        EXPECT_EQ(event.repoName(), "shop");
        EXPECT_LE(event.cwd.capacity(), 2 * AgentEvent::longestName);
        EXPECT_EQ(event.cwd.starts_with('/'), !folder.starts_with(deep));
    }
}

TEST(AgentEvent, ofAVeryLongNameOnlyWholeCharactersAreKept) {
    AgentEvent event;
    for (int i = 0; i < 5000; ++i)
        event.cwd += "\U0001F600";
    event.sessionID = event.terminalProgram = event.terminalBundleID = "x" + event.cwd;
    event.cutNames();
    for (const std::string& name :
         {event.cwd, event.sessionID, event.terminalProgram, event.terminalBundleID}) {
        EXPECT_LE(name.size(), AgentEvent::longestName + 32);
        EXPECT_TRUE(corvane::text::isUtf8(name)) << name;
    }
}

TEST(AgentEvent, longIdentifiersThatDifferAnywhereStillDifferAndEqualOnesStayEqual) {
    const std::string long1(5'000'000, 'x');
    const auto cut = [](std::string identifier) {
        AgentEvent event;
        event.sessionID = std::move(identifier);
        event.cutNames();
        return event.sessionID;
    };
    EXPECT_EQ(cut(long1), cut(long1));
    EXPECT_NE(cut(long1), cut(long1 + "y"));
    EXPECT_NE(cut(long1), cut("y" + long1));
    EXPECT_NE(cut(long1 + "y" + long1), cut(long1 + "z" + long1));
}

struct SampleRow {
    std::string_view file;
    AgentKind source;
    std::optional<EventKind> kind;
};

TEST(AgentEvent, readsWhatTheAgentsReallySent) {
    const std::vector<SampleRow> rows{
        {"claude-Notification-agent_needs_input.json", AgentKind::claude, std::nullopt},
        {"claude-Notification-idle_prompt.json", AgentKind::claude, EventKind::needsInput},
        {"claude-Notification-permission_prompt.json", AgentKind::claude, EventKind::needsPermission},
        {"claude-PostToolUse-Bash.json", AgentKind::claude, EventKind::running},
        {"claude-PostToolUse-Write.json", AgentKind::claude, EventKind::running},
        {"claude-SessionEnd-clear.json", AgentKind::claude, EventKind::ended},
        {"claude-SessionEnd-prompt_input_exit.json", AgentKind::claude, EventKind::ended},
        {"claude-Stop.json", AgentKind::claude, EventKind::finished},
        {"claude-UserPromptSubmit.json", AgentKind::claude, EventKind::running},
        {"codex-agent-turn-complete-codex-tui.json", AgentKind::codex, EventKind::finished},
        {"codex-agent-turn-complete-codex_exec.json", AgentKind::codex, EventKind::finished},
        {"codex-agent-turn-complete-title.json", AgentKind::codex, std::nullopt},
    };
    for (const SampleRow& row : rows) {
        const std::string payload = corvane::test::testData("agent-payloads/" + std::string(row.file));
        const auto event = parse("corvane-event 1\nsource=" + std::string(row.source.rawValue()) +
                                 "\nterm=\nbundle=\n---\n" + payload);
        ASSERT_EQ(event.has_value(), row.kind.has_value()) << row.file;
        if (!event) continue;
        EXPECT_EQ(event->source, row.source) << row.file;
        EXPECT_EQ(event->kind, *row.kind) << row.file;
        EXPECT_EQ(event->repoName(), "project") << row.file;
        EXPECT_EQ(event->sessionID.size(), 36U) << row.file;
    }
}

} // namespace
