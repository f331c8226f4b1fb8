#include "Agents/EventPayload.h"
#include "Core/Intake/ReferenceReader.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using corvane::EventPayload;

constexpr std::array<std::string_view, 3> names{"cwd", "message", "session_id"};

/// A payload read from its own memory, whose padding looks like the end of a document.
class Reading {
  public:
    explicit Reading(std::string_view json)
        : padded_(std::string(json) + std::string(EventPayload::padding, '}'))
        , readable_(payload_.read(std::string_view(padded_).substr(0, json.size()), names)) {}

    [[nodiscard]] bool isReadable() const { return readable_; }
    [[nodiscard]] std::optional<std::string> string(std::string_view name) const {
        return payload_.string(name);
    }
    [[nodiscard]] std::optional<std::string> firstString(std::string_view name) const {
        return payload_.firstString(name);
    }

  private:
    std::string padded_;
    EventPayload payload_;
    bool readable_;
};

bool isReadable(std::string_view json) {
    return Reading(json).isReadable();
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

/// An object that is `depth` levels deep, itself included.
std::string nestedArrays(std::size_t depth) {
    return R"({"a":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') + "}";
}

std::string nestedObjects(std::size_t depth) {
    return repeated(R"({"a":)", depth) + "0" + std::string(depth, '}');
}

const std::vector<std::string>& validDocuments() {
    static const std::vector<std::string> documents{
        "{}",
        " \t\r\n{ \t\r\n} \t\r\n",
        R"({"":0})",
        R"({"a":1,"a":2})",
        R"({"a":{}})",
        R"({"a":[]})",
        R"({"a":[[],{},[{}],{"b":[]}]})",
        R"({"a":[1,2],"b":{"c":true,"d":false,"e":null}})",
        R"({"a" : [ 1 , 2 ] , "b" : { "c" : "d" } })",
        R"({"a":0})",
        R"({"a":-0})",
        R"({"a":-0.0e-0})",
        R"({"a":1.5E+300})",
        R"({"a":1e5})",
        R"({"a":0e1})",
        R"({"a":18446744073709551615})",
        R"({"a":18446744073709551616})",
        R"({"a":-9223372036854775809})",
        R"({"a":123456789012345678901234567890})",
        R"({"a":0.123456789012345678901234567890})",
        R"({"a":[123456789012345678901234567890],"b":-1e-400})",
        R"({"a":"\"\\\/\b\f\n\r\t"})",
        R"({"a":"\u0000\u001F\u00e4\uFFFF\ud83D\uDE00"})",
        R"({"a":"\\ud800"})",
        R"({"a":"\ud800"})",
        R"({"a":"\udbff "})",
        R"({"a":"\udc00"})",
        R"({"a":"\ud800\ud800"})",
        R"({"a":"\ud800\u0041"})",
        R"({"a":"\ud800\n"})",
        R"({"a":"\ud800\ue000"})",
        R"({"a":"\ud800\udbff"})",
        R"({"a":"\ud800\\udc00"})",
        R"({"a":"\udc00\ud800"})",
        R"({"a":"\ud83dx\ude00"})",
        R"({"\ud800":1,"a":[{"b":["\uDFFF"]}]})",
        R"({"a":"\\\\"})",
        R"({"a\n\u0061\"":1})",
        R"({"a":"/ \u2028 {}[]:,"})",
        "{\"a\":\"\x7F \xC2\x80 \xEF\xBF\xBF \xF4\x8F\xBF\xBF\"}",
        "{\"a\":\"\xEF\xBB\xBF\"}",
    };
    return documents;
}

// clang-format off
const std::vector<std::string>& invalidDocuments() {
    static const std::vector<std::string> documents{
    "", " ", "\n", "[]", "[{}]", "\"a\"", "1", "true", "null", "{", "}", "[", "]", ":", ",", "{}}", "{}{}", "{},", "{} x",
    "{}]", "{}\"a\"", "{}1", "x{}", ",{}", "{]", "{[}", "{,}", "{:}", "{1}", "{1:2}", "{null:1}", "{a:1}", "{'a':1}",
    R"({"a"})", R"({"a":})", R"({"a":,})", R"({"a"::1})", R"({"a"=1})", R"({"a" 1})", R"({"a" "b"})", R"({"a",1})",
    R"({"a":1,})", R"({,"a":1})", R"({"a":1,,"b":2})", R"({"a":1 "b":2})", R"({"a":1:2})", R"({"a":"b":1})", R"({"a":"b" "c"})",
    R"({"a":1)", R"({"a":1,)", R"({"a":)", R"({"a")", R"({"a)", R"({"a":"b)", R"({"a":{})", R"({"a":{"b":1})", R"({"a":[])",
    R"({"a":[})", R"({"a":]})", R"({"a":[1})", R"({"a":[1}])", R"({"a":[1]])", R"({"a":{"b":1]})", R"({"a":{"b":1]]})", R"({"a":[{]})",
    R"({"a":[{}})", R"({"a":[1,]})", R"({"a":[,1]})", R"({"a":[,]})", R"({"a":[1,,2]})", R"({"a":[1 2]})", R"({"a":[1:2]})",
    R"({"a":["b":1]})", R"({"a":["b" 1]})", R"({"a":{"b"}})", R"({"a":{"b",1}})", R"({"a":{1}})", R"({"a":{[]}})", R"({"a":[{}:1]})",
    R"({"a":tru})", R"({"a":truE})", R"({"a":truee})", R"({"a":True})", R"({"a":t})", R"({"a":nul})", R"({"a":nulll})", R"({"a":NULL})",
    R"({"a":fals})", R"({"a":false0})", R"({"a":true false})", R"({"a":true"b"})", R"({"a":undefined})", R"({"a":NaN})", R"({"a":Infinity})",
    R"({"a":-Infinity})", R"({"a":-})", R"({"a":+1})", R"({"a":01})", R"({"a":-01})", R"({"a":00})", R"({"a":1.})", R"({"a":.5})", R"({"a":-.5})",
    R"({"a":1.e1})", R"({"a":1e})", R"({"a":1e+})", R"({"a":1E-})", R"({"a":1e1.5})", R"({"a":1.2.3})", R"({"a":0x10})", R"({"a":1_000})",
    R"({"a":1a})", R"({"a":1"b"})", R"({"a":--1})", R"({"a":1-})", R"({"a":1+2})", R"({"a":1 2})", R"({"a":2e1e1})", R"({"a":١})",
    R"({"a":"\x"})", R"({"a":"\a"})", R"({"a":"\0"})", R"({"a":"\'"})", R"({"a":"\U0041"})", R"({"a":"\ "})", R"({"a":"\"})", R"({"a":"\\\"})",
    R"({"a":"\u"})", R"({"a":"\u1"})", R"({"a":"\u12"})", R"({"a":"\u123"})", R"({"a":"\u123g"})", R"({"a":"\u 123"})", R"({"a":"\u+123"})",
    R"({"a":"\ud800\udc0"})", R"({"a":"\ud80"})", R"({"a":"\ud800\q"})", R"({"a":"\udc00\u"})", R"({"a":"\ud8g0"})", R"({"\ud800\ud80":1})",
    R"({"\x":1})", R"({"\u12":1})", R"({"a":{"\q":1}})", R"({"a":[["\q"]]})",
    "{\"a\":\"\n\"}", "{\"a\":\"\t\"}", "{\"a\":\"\x01\"}", "{\"a\":\"\x1F\"}", "{\"a\n\":1}",
    "{\"a\":1\v}", "{\"a\":1\f}", "{\f}", "{\"a\"\0321}", "{\"a\":1\x0C\"b\":2}", "{\xC2\xA0}", "{\"a\":\302\2401}", "{}\xE2\x80\xA8",
    "{\"a\":\"\x80\"}", "{\"a\":\"\xC3\"}", "{\"a\":\"\xC0\x80\"}", "{\"a\":\"\xED\xA0\x80\"}", "{\"a\":\"\xF4\x90\x80\x80\"}",
    "{\"a\":\"\xF8\x88\x80\x80\x80\"}", "{\"a\":\"\xE2\x82\"}", "{\"\xFF\":1}", "{\xFF}", "{}\xFF", "\xFE\xFF", "{\"a\":\"\xE2\x28\xA1\"}",
    "/**/{}", "{}//x", "{/*x*/}", "{\"a\":1;}", "({})", "\\{}", R"({"a":\n})", "#{}",
    "{\"a\":1}}", R"({"a":1}])", R"({"a":1}"b")", R"({"a":1},)", R"({"a":[1]}:)",
    };
    return documents;
}
// clang-format on

TEST(EventPayload, readsEveryValidDocument) {
    for (const std::string& json : validDocuments()) {
        EXPECT_TRUE(isReadable(json)) << json;
        const auto reference = corvane::test::referenceObject(json);
        ASSERT_TRUE(reference) << json;
        EXPECT_TRUE(reference->readable) << json;
    }
}

TEST(EventPayload, refusesEveryInvalidDocument) {
    for (const std::string& json : invalidDocuments()) {
        EXPECT_FALSE(isReadable(json)) << json;
        const auto reference = corvane::test::referenceObject(json);
        ASSERT_TRUE(reference) << json;
        EXPECT_FALSE(reference->readable) << json;
    }
}

TEST(EventPayload, refusesAByteOrderMark) {
    EXPECT_FALSE(isReadable("\xEF\xBB\xBF{}"));
    EXPECT_FALSE(isReadable("{}\xEF\xBB\xBF"));
}

TEST(EventPayload, refusesZeroBytes) {
    using std::string_literals::operator""s;
    EXPECT_FALSE(isReadable("{}\0"s));
    EXPECT_FALSE(isReadable("\0{}"s));
    EXPECT_FALSE(isReadable("{\"a\":1\0}"s));
    EXPECT_FALSE(isReadable("{\"a\":\"\0\"}"s));
    EXPECT_FALSE(isReadable("{}\0garbage"s));
}

TEST(EventPayload, acceptsNumbersThatFitNoType) {
    EXPECT_TRUE(isReadable(R"({"a":1e999})"));
    EXPECT_TRUE(isReadable(R"({"a":-1E+99999999999999999999})"));
    EXPECT_TRUE(isReadable(R"({"a":)" + std::string(100'000, '9') + "}"));
    EXPECT_TRUE(isReadable(R"({"a":0.)" + std::string(100'000, '0') + "1}"));
    EXPECT_FALSE(isReadable(R"({"a":)" + std::string(100'000, '9') + "x}"));
}

TEST(EventPayload, nestsExactlyToItsLimit) {
    const std::size_t limit = 1'024;
    EXPECT_EQ(EventPayload::maxDepth, limit);
    EXPECT_TRUE(isReadable(nestedArrays(limit)));
    EXPECT_FALSE(isReadable(nestedArrays(limit + 1)));
    EXPECT_TRUE(isReadable(nestedObjects(limit)));
    EXPECT_FALSE(isReadable(nestedObjects(limit + 1)));
    EXPECT_TRUE(isReadable(R"({"a":)" + repeated("[{\"b\":", limit / 2 - 1) + "[\"x\"]" +
                           repeated("}]", limit / 2 - 1) + "}"));
}

TEST(EventPayload, returnsTheRequestedStrings) {
    const Reading reading(R"({"x":{"cwd":"inner"},"cwd":"/w/shop","message":12,"y":["message","cwd"]})");
    ASSERT_TRUE(reading.isReadable());
    EXPECT_EQ(reading.string("cwd"), "/w/shop");
    EXPECT_EQ(reading.string("message"), std::nullopt);
    EXPECT_EQ(reading.string("session_id"), std::nullopt);
    EXPECT_EQ(reading.string("y"), std::nullopt);
}

TEST(EventPayload, returnsNothingFromAnUnreadableDocument) {
    const Reading reading(R"({"cwd":"/w/shop"} x)");
    EXPECT_FALSE(reading.isReadable());
    EXPECT_EQ(reading.string("cwd"), std::nullopt);
}

TEST(EventPayload, resolvesEscapesInValuesAndNames) {
    EXPECT_EQ(Reading(R"({"\u0063w\u0064":"/w"})").string("cwd"), "/w");
    EXPECT_EQ(Reading(R"({"cwd":"a","c\u0077d" : "b"})").string("cwd"), "b");
    EXPECT_EQ(Reading(R"({"session\u005Fid"   :   "b"  })").string("session_id"), "b");
    EXPECT_EQ(Reading(R"({"\\u0063wd":"x"})").string("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"cwd":"\"\\\/\b\f\n\r\t"})").string("cwd"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(Reading(R"({"cwd":"\u0024\u00e4\u20aC\ud83D\udE00\ud800\udc00\udbff\udfff\ud7ff\ue000"})")
                  .string("cwd"),
              "$ä€😀\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\xED\x9F\xBF\xEE\x80\x80");
    EXPECT_EQ(Reading(R"({"cwd":"\ud83d \uDE00\ud800\ue000\ud800\ud83d\ude00\udbff"})").string("cwd"),
              "\uFFFD \uFFFD\uFFFD\uE000\uFFFD😀\uFFFD");
    EXPECT_EQ(Reading(R"({"cwd":"\ud800 \udbff \udc00 \udfff"})").string("cwd"),
              "\uFFFD \uFFFD \uFFFD \uFFFD")
        << "the first and last of each half, alone";
    EXPECT_EQ(Reading(R"({"cwd":"a\u0000b"})").string("cwd"), std::string("a\0b", 3));
    EXPECT_EQ(Reading("{\"cwd\":\"\xC3\xA4 \xF0\x9F\x98\x80\"}").string("cwd"), "ä 😀");
    EXPECT_EQ(Reading(R"({"cwd":""})").string("cwd"), "");
}

TEST(EventPayload, returnsTheFirstElementOfAnArrayOfStrings) {
    const auto first = [](std::string_view value) {
        return Reading(R"({"cwd":)" + std::string(value) + R"(,"message":["no"]})").firstString("cwd");
    };
    EXPECT_EQ(first(R"(["a","b"])"), "a");
    EXPECT_EQ(first(" [ \t\r\n\"a\" , 1 ] "), "a");
    EXPECT_EQ(first(R"(["\\\"\u00e4\n]","b"])"), "\\\"ä\n]");
    EXPECT_EQ(first(R"([""])"), "");
    EXPECT_EQ(first(R"(["\\"])"), "\\");
    for (const std::string_view other : {"[]", "[ ]", R"([1,"a"])", R"([["a"]])", R"([null])",
                                         R"([{"a":"b"}])", R"("a")", R"({"a":["b"]})", "1", "null"}) {
        EXPECT_EQ(first(other), std::nullopt) << other;
    }
    EXPECT_EQ(Reading(R"({"cwd":["a"]})").string("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"cwd":["a"],"cwd":["b"]})").firstString("cwd"), "b");
    EXPECT_EQ(Reading(R"({"cwd":["a"],"cwd":"b"})").firstString("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"message":"a"})").firstString("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"cwd":["a"],})").firstString("cwd"), std::nullopt);
}

TEST(EventPayload, usesTheLastOfDuplicateNamesWhateverItsType) {
    EXPECT_EQ(Reading(R"({"cwd":"a","cwd":"b"})").string("cwd"), "b");
    EXPECT_EQ(Reading(R"({"cwd":"a","cwd":1})").string("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"cwd":"a","cwd":{"cwd":"c"}})").string("cwd"), std::nullopt);
    EXPECT_EQ(Reading(R"({"cwd":null,"cwd":"b"})").string("cwd"), "b");
}

TEST(EventPayload, readsOneDocumentAfterTheOther) {
    EventPayload payload;
    const std::string padding(EventPayload::padding, ' ');
    const auto cwd = [&](const std::string& json) {
        const std::string padded = json + padding;
        return payload.read(std::string_view(padded).substr(0, json.size()), names) ? payload.string("cwd")
                                                                                    : std::nullopt;
    };
    EXPECT_EQ(cwd(R"({"cwd":"a"})"), "a");
    EXPECT_EQ(cwd(R"({"cwd":"b","more":")" + std::string(200'000, 'x') + R"("})"), "b");
    EXPECT_EQ(cwd(R"({"cwd":)"), std::nullopt);
    EXPECT_EQ(cwd(R"({})"), std::nullopt);
    EXPECT_EQ(cwd(nestedArrays(EventPayload::maxDepth + 1)), std::nullopt);
    EXPECT_EQ(cwd(R"({"cwd":"c"})"), "c");
}

/// The reader agrees with the other parser about `json`.
void expectAgreement(std::string_view json) {
    const auto reference = corvane::test::referenceObject(json);
    if (!reference) return;
    const Reading reading(json);
    ASSERT_EQ(reading.isReadable(), reference->readable) << json;
    for (const std::string_view name : names) {
        ASSERT_EQ(reading.string(name), reference->string(std::string(name))) << name << " in " << json;
    }
}

/// A document with some of everything, short enough to be damaged in every possible way.
constexpr std::string_view varied =
    R"({"cwd":"/w/\u00e4\ud83d\ude00","n":[-0,1.5e+3,true,false,null,{}],"message":"a\\\"b\n","s":{"t":[[]],"":"ß"}})";

TEST(EventPayload, refusesEveryTruncationOfARealPayload) {
    for (const std::string_view file :
         {"claude-PostToolUse-Write.json", "claude-Stop.json", "codex-agent-turn-complete-title.json"}) {
        const std::string payload = corvane::test::testData("agent-payloads/" + std::string(file));
        const std::size_t end = payload.find_last_of('}');
        for (std::size_t length = 0; length <= end; ++length) {
            ASSERT_FALSE(isReadable(std::string_view(payload).substr(0, length))) << file << " at " << length;
        }
        EXPECT_TRUE(isReadable(payload)) << file;
    }
}

TEST(EventPayload, agreesWithAnotherParserAboutEveryDamagedByte) {
    ASSERT_TRUE(isReadable(varied));
    for (std::size_t position = 0; position < varied.size(); ++position) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string damaged(varied);
            damaged[position] = static_cast<char>(byte);
            ASSERT_NO_FATAL_FAILURE(expectAgreement(damaged));
        }
        std::string shorter(varied);
        shorter.erase(position, 1);
        ASSERT_NO_FATAL_FAILURE(expectAgreement(shorter));
        for (const char inserted : std::string_view("{}[]:,\"\\ 0-.eE+tux\n\x80")) {
            std::string longer(varied);
            longer.insert(position, 1, inserted);
            ASSERT_NO_FATAL_FAILURE(expectAgreement(longer));
        }
    }
}

TEST(EventPayload, agreesWithAnotherParserAboutDamagedRealPayloads) {
    const std::string payload = corvane::test::testData("agent-payloads/claude-PostToolUse-Write.json");
    for (std::size_t position = 0; position < payload.size(); ++position) {
        for (const char byte : std::string_view("{}[]:,\"\\0x\n\xFF")) {
            std::string damaged = payload;
            damaged[position] = byte;
            ASSERT_NO_FATAL_FAILURE(expectAgreement(damaged));
        }
    }
}

/// A document whose only member is `literal` with its escapes.
std::string documentWith(std::string_view literal) {
    std::string json = R"({"cwd":")";
    json += literal;
    json += R"("})";
    return json;
}

TEST(EventPayload, findsABadEscapeAnywhereInALongText) {
    // Long texts are checked in blocks: the invalid escape moves across several block boundaries, after even
    // and odd runs of backslashes.
    const std::string end(700, 'y');
    for (const std::string_view before :
         {R"()", R"(\\)", R"(\\\\)", R"(\n)", R"(\u0041)", R"(\ud83d\ude00)"}) {
        for (std::size_t position = 230; position < 530; ++position) {
            const std::string start = R"(\t)" + std::string(position, 'x') + std::string(before);
            for (const std::string_view escape : {R"(\q)", R"(\ud800)", R"(\\q)", R"(\r)"}) {
                std::string literal = start;
                literal += escape;
                literal += end;
                ASSERT_NO_FATAL_FAILURE(expectAgreement(documentWith(literal)));
            }
        }
    }
}

TEST(EventPayload, countsLongRowsOfBackslashes) {
    const std::string end(300, 'x');
    for (std::size_t count = 500; count < 1100; ++count) {
        const std::string row(count, '\\');
        for (const std::string_view next : {"", "q", "u0041", "n"}) {
            std::string literal = row;
            literal += next;
            if (!next.empty()) literal += end;
            ASSERT_NO_FATAL_FAILURE(expectAgreement(documentWith(literal)));
        }
    }
}

// The following would take minutes, or overflow the stack, if anything grew faster than the document.

constexpr std::size_t million = 1'000'000;

TEST(EventPayload, survivesAMillionNestedArrays) {
    EXPECT_FALSE(isReadable(nestedArrays(million)));
    EXPECT_FALSE(isReadable(nestedObjects(million)));
    EXPECT_FALSE(isReadable(R"({"a":)" + std::string(million, '[')));
    EXPECT_FALSE(isReadable(std::string(million, '{')));
    EXPECT_FALSE(isReadable(std::string(million, '}')));
}

TEST(EventPayload, survivesSixtyFourMebibytesOfBrackets) {
    EXPECT_FALSE(isReadable(std::string(std::size_t{64} << 20, '[')));
    EXPECT_FALSE(isReadable(R"({"a":)" + std::string(std::size_t{64} << 20, '[')));
}

TEST(EventPayload, readsSixtyMebibytesOfEscapes) {
    const std::size_t count = std::size_t{10} << 20;
    const Reading reading(R"({"message":")" + repeated(R"(\u00e4)", count) + R"("})");
    ASSERT_TRUE(reading.isReadable());
    EXPECT_EQ(reading.string("message")->size(), 2 * count);
    EXPECT_TRUE(isReadable(R"({"message":")" + repeated(R"(\n)", 3 * count) + R"("})"));
    EXPECT_TRUE(isReadable(R"({"message":")" + std::string(6 * count, '\\') + R"("})"));
    EXPECT_FALSE(isReadable(R"({"message":")" + std::string(6 * count + 2, '\\') + R"(q\"})"));
}

TEST(EventPayload, readsAMillionDuplicateNames) {
    std::string json = "{";
    for (std::size_t i = 0; i < million; ++i)
        json += R"("message":"\u0061","m\u0065ssage":")" + std::to_string(i) + R"(",)";
    const Reading reading(json + R"("cwd":"/w"})");
    ASSERT_TRUE(reading.isReadable());
    EXPECT_EQ(reading.string("message"), "999999");
    EXPECT_EQ(reading.string("cwd"), "/w");
}

TEST(EventPayload, readsMebibytesOfWhiteSpaceBetweenAnyTwoTokens) {
    const std::string space(million, ' ');
    const Reading reading(space + "{" + space + R"("cwd")" + space + ":" + space + R"("/w")" + space + "," +
                          space + R"("a":[)" + space + "1" + space + "]" + space + "}" + space);
    ASSERT_TRUE(reading.isReadable());
    EXPECT_EQ(reading.string("cwd"), "/w");
}

} // namespace
