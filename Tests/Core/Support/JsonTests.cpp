#include "Support/Json.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {
namespace {

std::string compact(std::string_view text) {
    const std::optional<Json> value = Json::parse(text);
    return value ? value->write(Json::Layout::compact) : "unreadable";
}

TEST(Json, readsAndWritesEveryTypeOfValue) {
    for (const std::string_view text : {"null", "true", "false", "0", "-1.5e+10", "\"\"", "\"a\"", "[]", "{}",
                                        "[null,true,[],{},\"x\",1]", R"({"a":{"b":[1,2]},"c":null})"}) {
        EXPECT_EQ(compact(text), text);
    }
    EXPECT_EQ(compact(" \t\r\n [ 1 , { \"a\" : 2 } ] \n"), R"([1,{"a":2}])");
}

TEST(Json, keepsTheTextOfNumbers) {
    for (const std::string_view text :
         {"-0", "0.0", "-0.00", "1.10", "0e0", "0E-0", "10", "12345678901234567890123",
          "-9223372036854775809", "18446744073709551616",
          "0.1000000000000000055511151231257827021181583404541015625", "1e400", "1E+0400", "-2.50e-4000",
          "1e99999999999999999999", "9007199254740993.0"}) {
        EXPECT_EQ(compact(text), text);
        EXPECT_EQ(compact("[" + std::string(text) + "]"), "[" + std::string(text) + "]");
        EXPECT_EQ(compact("[0," + std::string(text) + " ,1]"), "[0," + std::string(text) + ",1]");
        EXPECT_EQ(compact("{\"1\":" + std::string(text) + "}"), "{\"1\":" + std::string(text) + "}");
        EXPECT_EQ(Json::parse(text)->ifNumber()->text, text);
    }
    EXPECT_EQ(compact(std::string(100'000, '9')), std::string(100'000, '9'));
}

TEST(Json, refusesNumbersThatTheGrammarRefuses) {
    for (const std::string_view text :
         {"01",  "-01",   "00",  "1.",       ".5",  "-.5", "+1",  "-",     "1e",  "1e+", "1.e1",
          "0x1", "1_000", "NaN", "Infinity", "1,5", "--1", "1-1", "1e1.5", "1 1", "00.5"}) {
        EXPECT_EQ(compact(text), "unreadable") << text;
        EXPECT_EQ(compact("[" + std::string(text) + "]"), text == "1,5" ? "[1,5]" : "unreadable") << text;
    }
}

TEST(Json, digitsInStringsAndKeysAreNoNumbers) {
    EXPECT_EQ(compact(R"({"0123456":"00\"0123","a":["\\",123,"\\\"456"]})"),
              R"({"0123456":"00\"0123","a":["\\",123,"\\\"456"]})");
}

TEST(Json, theLastOfEqualKeysCounts) {
    EXPECT_EQ(compact(R"({"b":0,"a":1,"a":{"x":1},"\u0061":3})"), R"({"a":3,"b":0})");
}

TEST(Json, keysAreSortedByTheirBytes) {
    EXPECT_EQ(
        compact("{\"\xEF\xBF\xBD\":1,\"\xF0\x9F\x98\x80\":2,\"b\":3,\"\":4,\"B\":5,\"a\\u0000\":6,\"a\":7}"),
        "{\"\":4,\"B\":5,\"a\":7,\"a\\u0000\":6,\"b\":3,\"\xEF\xBF\xBD\":1,\"\xF0\x9F\x98\x80\":2}");
}

TEST(Json, escapesOnlyWhatItMust) {
    EXPECT_EQ(compact(R"("\u0000\u0001\u001F\u007f\b\f\n\r\t\"\\\/\u00e9\u2028\ud83e\udd9c")"),
              "\"\\u0000\\u0001\\u001f\x7F\\b\\f\\n\\r\\t\\\"\\\\/\xC3\xA9\xE2\x80\xA8\xF0\x9F\xA6\x9C\"");
}

TEST(Json, halvesOfSurrogatePairsAreWrittenAsTheyWereRead) {
    for (const std::string_view text :
         {R"("\ud800")", R"("\uDFff")", R"("\udc00\ud800")", R"("\ud800\ud800")", R"("\ud800\uDBFF")",
          R"("\ud800x\udc00")", R"("\\\ud800\\udc00")", R"("a\n\ud800\"b")", R"({"\udc00\ud83d":["\ud83d"]})",
          "\"\\ud800\xEE\x80\x80\"", R"({"a":"\ud83d","b":"dead"})",
          R"(["\ud83d",12345678901234567890123])"}) {
        EXPECT_EQ(compact(text), text);
    }
    EXPECT_EQ(compact(R"("\ud800\ue000")"), "\"\\ud800\xEE\x80\x80\"") << "the first code point after them";
    EXPECT_EQ(compact(R"("\ud83d\ud83d\ude00\ude00")"), "\"\\ud83d\xF0\x9F\x98\x80\\ude00\"");
    EXPECT_EQ(compact(R"("\u00e9\/\ud800\u00e9\/")"), "\"\xC3\xA9/\\ud800\xC3\xA9/\"");
    EXPECT_EQ(compact("\"\xEF\xBF\xBD\\ufffd\\ud800\""), "\"\xEF\xBF\xBD\xEF\xBF\xBD\\ud800\"");
}

TEST(Json, halvesOfSurrogatePairsInKeysAreEqualWhateverTheCaseOfTheirDigits) {
    EXPECT_EQ(compact(R"({"\uDABC":1,"\udabc":2,"\udabd":3,"DABC":4})"),
              R"({"DABC":4,"\udabc":2,"\udabd":3})");
}

TEST(Json, halvesOfSurrogatePairsAreReplacementCharactersInText) {
    const auto text = [](std::string_view json) { return Json::parse(json).value().text(); };
    EXPECT_EQ(text(R"("a\ud83d\uDE00\udc00b")"), "a😀\uFFFDb");
    EXPECT_EQ(text(R"("\ud800\ud800FFFD")"), "\uFFFD\uFFFDFFFD");
    EXPECT_EQ(text(R"("x")"), "x");
    EXPECT_EQ(text("1"), std::nullopt);
}

TEST(Json, refusesBadEscapesAroundHalvesOfSurrogatePairsAndBadUtf8) {
    for (const std::string_view text :
         {R"("\ud80")", R"("\ud800\udc0")", R"("\ud800\q")", R"("\ud8g0")", R"("\ud800)", R"("\ud800\")",
          R"(\ud800)", R"([\ud800])", "\"\x80\"", "\"\xC3\"", "\"\xC0\x80\"", "\"\xED\xA0\x80\"", "\"\xFF\"",
          "\"\xF5\x80\x80\x80\""}) {
        EXPECT_EQ(compact(text), "unreadable") << text;
    }
}

TEST(Json, refusesTextAroundTheValue) {
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {""sv, " "sv, "1 2"sv, "{}}"sv, "{},"sv, "{}\0"sv, "\0"sv, "[1\0]"sv, "\xEF\xBB\xBF{}"sv,
          "{} // note"sv, "/**/1"sv, "\v1"sv, "\xC2\xA0"sv}) {
        EXPECT_EQ(compact(text), "unreadable");
    }
}

TEST(Json, nestingStopsAtTheMaximumDepth) {
    const std::string deepest = std::string(Json::maximumDepth, '[') + std::string(Json::maximumDepth, ']');
    EXPECT_EQ(compact(deepest), deepest);
    EXPECT_EQ(compact("[" + deepest + "]"), "unreadable");
    EXPECT_EQ(compact(std::string(5'000'000, '[')), "unreadable");
    std::string objects;
    for (int i = 0; i < 1'000'000; ++i)
        objects += "{\"\":";
    EXPECT_EQ(compact(objects), "unreadable");
}

TEST(Json, indentedLayoutPutsOneItemOnALine) {
    EXPECT_EQ(Json::parse(R"({"b":[1,[],{}],"a":{"c":"x"}})")->write(Json::Layout::indented), R"({
  "a": {
    "c": "x"
  },
  "b": [
    1,
    [],
    {}
  ]
})");
}

std::optional<double> real(const char* text) {
    return Json::Number{text}.toDouble();
}

std::optional<std::int64_t> integer(const char* text) {
    return Json::Number{text}.toInteger();
}

TEST(Json, numbersAreReadAsTheNearestDouble) {
    EXPECT_EQ(real("0"), 0.0);
    EXPECT_EQ(real("-12.5"), -12.5);
    EXPECT_EQ(real("0.1"), 0.1);
    EXPECT_EQ(real("1.2345E+3"), 1234.5);
    EXPECT_EQ(real("12345e-1"), 1234.5);
    EXPECT_EQ(real("811692800.123456789"), 811692800.123456789);
    EXPECT_EQ(real("9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(real("123456789012345678901234567890"), 123456789012345678901234567890.0);
    EXPECT_EQ(real("1e-400"), 0.0);
    EXPECT_EQ(real("1.7976931348623157e308"), std::numeric_limits<double>::max());
    for (const char* number : {"1e309", "-1e309", "1e400", "1e99999999999999999999"})
        EXPECT_EQ(real(number), std::nullopt) << number;
}

TEST(Json, integersAreReadHoweverTheyAreWritten) {
    for (const char* number : {"5", "5.0", "5e0", "50e-1", "0.5e1", "0.05E+2"})
        EXPECT_EQ(integer(number), 5) << number;
    EXPECT_EQ(integer("-0"), 0);
    EXPECT_EQ(integer("-3"), -3);
    EXPECT_EQ(integer("9007199254740993"), 9'007'199'254'740'993);
    EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(integer("1e18"), 1'000'000'000'000'000'000);
    for (const char* number : {"5.5", "-0.5", "1e-9", "9223372036854775808", "-9223372036854777856",
                               "18446744073709551615", "99999999999999999999", "1e19", "-1e19", "1e400"}) {
        EXPECT_EQ(integer(number), std::nullopt) << number;
    }
}

TEST(Json, doublesRoundTripExactly) {
    EXPECT_EQ(Json::real(811692800.25).write(Json::Layout::compact), "811692800.25");
    for (const double value : {0.0, -0.5, 0.1, 1.0 / 3.0, 811692800.123456789, 1e300, -9.2e18, 5e-324}) {
        const std::string text = Json::real(value).write(Json::Layout::compact);
        const std::optional<Json> read = Json::parse(text);
        ASSERT_TRUE(read && read->ifNumber() != nullptr) << text;
        EXPECT_EQ(read->ifNumber()->toDouble(), value) << text;
    }
}

TEST(Json, isBuiltFromNestedBraces) {
    const Json value = Json::Object{{"text", "x"},
                                    {"on", true},
                                    {"count", Json::integer(-5)},
                                    {"exact", Json::Number{"1.50"}},
                                    {"list", Json::Array{Json(), std::string("y"), Json::Object()}}};
    EXPECT_EQ(value.write(Json::Layout::compact),
              R"({"count":-5,"exact":1.50,"list":[null,"y",{}],"on":true,"text":"x"})");
    EXPECT_EQ(Json::parse(value.write(Json::Layout::indented)), value);
}

TEST(Json, returnsValuesByTypeAndKey) {
    const Json value = Json::parse(R"({"b":true,"n":1.50,"s":"x","z":null,"a":[1],"o":{}})").value();
    EXPECT_EQ(*value.find("b")->ifBoolean(), true);
    EXPECT_EQ(value.find("n")->ifNumber()->text, "1.50");
    EXPECT_EQ(*value.find("s")->ifString(), "x");
    EXPECT_TRUE(value.find("z")->isNull());
    EXPECT_EQ(value.find("a")->ifArray()->size(), 1U);
    EXPECT_TRUE(value.find("o")->ifObject()->empty());
    EXPECT_EQ(value.find("missing"), nullptr);
    EXPECT_EQ(value.find("s")->find("s"), nullptr);
    for (const std::string_view key : {"b", "n", "s", "z", "a", "o"}) {
        const Json* member = value.find(key);
        const int types = (member->ifBoolean() != nullptr) + (member->ifNumber() != nullptr) +
                          (member->ifString() != nullptr) + (member->ifArray() != nullptr) +
                          (member->ifObject() != nullptr) + (member->isNull() ? 1 : 0);
        EXPECT_EQ(types, 1) << key;
    }
}

} // namespace
} // namespace corvane
