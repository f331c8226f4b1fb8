#include "Sessions/AlertPreferences.h"
#include "Support/TestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace corvane {
namespace {

using test::MemoryUserDefaults;
using testing::ElementsAre;

constexpr const char* key = "alertPreferences";
// 2001-01-01 00:00:00 UTC
constexpr std::int64_t storedEpoch = 978'307'200;

// What is loaded when `document` is stored.
AlertPreferences loaded(std::string_view document) {
    MemoryUserDefaults defaults;
    defaults.setData(key, document);
    return AlertPreferences::load(defaults, key);
}

std::string saved(const AlertPreferences& preferences) {
    MemoryUserDefaults defaults;
    preferences.save(defaults, key);
    return defaults.data(key).value_or("nothing");
}

// A whole document without its end.
std::string documentUpTo(std::string_view last) {
    return R"({"waitingSound":"Hero","doneSound":"Pop","soundsOn":false,"alertWhenDone":false)" +
           std::string(last);
}

std::optional<Date> quietUntil(std::string_view number) {
    return loaded(documentUpTo(R"(,"reminderMinutes":5,"quietUntil":)") + std::string(number) + "}")
        .quietUntil;
}

AlertPreferences other() {
    AlertPreferences preferences;
    preferences.waitingSound = "Hero";
    preferences.doneSound = "Pop";
    preferences.soundsOn = false;
    preferences.alertWhenDone = false;
    preferences.reminderMinutes = 5;
    return preferences;
}

TEST(AlertPreferences, haveTheirDefaultsAndChoices) {
    const AlertPreferences preferences;
    EXPECT_EQ(preferences.waitingSound, "Glass");
    EXPECT_EQ(preferences.doneSound, "Tink");
    EXPECT_TRUE(preferences.soundsOn);
    EXPECT_TRUE(preferences.alertWhenDone);
    EXPECT_EQ(preferences.reminderMinutes, 2);
    EXPECT_EQ(preferences.quietUntil, std::nullopt);
    EXPECT_EQ(AlertPreferences::defaultWaitingSound, "Glass");
    EXPECT_EQ(AlertPreferences::defaultDoneSound, "Tink");
    EXPECT_THAT(AlertPreferences::soundChoices,
                ElementsAre("Glass", "Ping", "Hero", "Submarine", "Purr", "Pop", "Tink", "Funk"));
    EXPECT_THAT(AlertPreferences::reminderChoices, ElementsAre(0, 1, 2, 5));
}

TEST(AlertPreferences, everyFieldCountsForEquality) {
    const auto differs = [](auto change) {
        AlertPreferences changed;
        change(changed);
        return !(changed == AlertPreferences());
    };
    EXPECT_EQ(AlertPreferences(), AlertPreferences());
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.waitingSound = "x"; }));
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.doneSound = "x"; }));
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.soundsOn = false; }));
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.alertWhenDone = false; }));
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.reminderMinutes = 3; }));
    EXPECT_TRUE(differs([](AlertPreferences& p) { p.quietUntil = Date(); }));
}

TEST(AlertPreferences, areQuietStrictlyBeforeTheEnd) {
    AlertPreferences preferences;
    EXPECT_FALSE(preferences.isQuiet(Date()));
    preferences.quietUntil = Date(1000, 500);
    EXPECT_TRUE(preferences.isQuiet(Date(1000, 499)));
    EXPECT_FALSE(preferences.isQuiet(Date(1000, 500)));
    EXPECT_FALSE(preferences.isQuiet(Date(1000, 501)));
    EXPECT_EQ(preferences.quietUntil, Date(1000, 500));
}

TEST(AlertPreferences, reminderIntervalIsInSecondsAndNeverNegative) {
    AlertPreferences preferences;
    EXPECT_EQ(preferences.reminderInterval(), Seconds(120));
    preferences.reminderMinutes = 5;
    EXPECT_EQ(preferences.reminderInterval(), Seconds(300));
    preferences.reminderMinutes = 0;
    EXPECT_EQ(preferences.reminderInterval(), Seconds(0));
    preferences.reminderMinutes = -3;
    EXPECT_EQ(preferences.reminderInterval(), Seconds(0));
    preferences.reminderMinutes = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(preferences.reminderInterval(), Seconds(0x1p63 * 60));
}

TEST(AlertPreferences, soundDependsOnTheKindOfEvent) {
    AlertPreferences preferences = other();
    preferences.soundsOn = true;
    EXPECT_EQ(preferences.sound(EventKind::needsPermission), "Hero");
    EXPECT_EQ(preferences.sound(EventKind::needsInput), "Hero");
    // Whether finishing alerts at all is decided elsewhere.
    EXPECT_EQ(preferences.sound(EventKind::finished), "Pop");
    EXPECT_EQ(preferences.sound(EventKind::running), std::nullopt);
    EXPECT_EQ(preferences.sound(EventKind::ended), std::nullopt);
    preferences.soundsOn = false;
    for (const EventKind kind : eventKinds)
        EXPECT_EQ(preferences.sound(kind), std::nullopt);
}

TEST(AlertPreferences, emptyUserDefaultsGiveTheDefaults) {
    const MemoryUserDefaults defaults;
    EXPECT_EQ(AlertPreferences::load(defaults, key), AlertPreferences());
}

TEST(AlertPreferences, areStoredUnderTheKeyThatTheCallerGives) {
    MemoryUserDefaults defaults;
    other().save(defaults, "one");
    EXPECT_EQ(AlertPreferences::load(defaults, "one"), other());
    EXPECT_EQ(AlertPreferences::load(defaults, "two"), AlertPreferences());
}

TEST(AlertPreferences, areWrittenAsOneCompactObjectInTheFieldsOrder) {
    EXPECT_EQ(
        saved(AlertPreferences()),
        R"({"waitingSound":"Glass","doneSound":"Tink","soundsOn":true,"alertWhenDone":true,"reminderMinutes":2})");
    AlertPreferences preferences = other();
    preferences.reminderMinutes = -3;
    preferences.quietUntil = Date(storedEpoch + 811'692'800, 250'000'000);
    EXPECT_EQ(saved(preferences), documentUpTo(R"(,"reminderMinutes":-3,"quietUntil":811692800.25})"));
}

TEST(AlertPreferences, roundTripExactly) {
    AlertPreferences preferences = other();
    preferences.waitingSound =
        "Quote \" slash / back \\ line \n nul " + std::string(1, '\0') + " \u00E9 \U0001F514";
    preferences.reminderMinutes = std::numeric_limits<std::int64_t>::min();
    preferences.quietUntil = AlertPreferences::storable(Date(1'790'000'000, 123'456'789));
    EXPECT_EQ(loaded(saved(preferences)), preferences);
    EXPECT_EQ(loaded(saved(AlertPreferences())), AlertPreferences());
}

TEST(AlertPreferences, aStorableDateRoundTripsExactly) {
    constexpr std::int64_t first = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t seconds :
         {first, first + 1, first + storedEpoch, std::int64_t{-62'135'596'800}, std::int64_t{-1},
          std::int64_t{0}, storedEpoch - 2, storedEpoch - 1, storedEpoch, storedEpoch + 1,
          storedEpoch + (1 << 22), storedEpoch + (1 << 23), std::int64_t{1'790'000'000}, last - storedEpoch,
          last}) {
        for (const std::int32_t nanoseconds :
             {0, 1, 10, 100'000'000, 123'456'789, 499'999'999, 999'999'999}) {
            AlertPreferences preferences;
            preferences.quietUntil = AlertPreferences::storable(Date(seconds, nanoseconds));
            EXPECT_EQ(loaded(saved(preferences)), preferences) << saved(preferences);
        }
    }
}

TEST(AlertPreferences, aStorableDateIsWithinATenthOfAMicrosecond) {
    for (const std::int32_t nanoseconds : {0, 1, 333'333'333, 500'000'000, 999'999'999}) {
        const Date date(1'790'000'000, nanoseconds);
        EXPECT_LE(std::abs((AlertPreferences::storable(date) - date).count()), 1e-7);
    }
    EXPECT_EQ(AlertPreferences::storable(Date(1'790'000'000, 0)), Date(1'790'000'000, 0));
    EXPECT_EQ(AlertPreferences::storable(Date(1'790'000'000, 250'000'000)), Date(1'790'000'000, 250'000'000));
}

TEST(AlertPreferences, quietUntilIsReadFromAnyNumber) {
    EXPECT_EQ(quietUntil("0"), Date(storedEpoch, 0));
    EXPECT_EQ(quietUntil("-0.0"), Date(storedEpoch, 0));
    EXPECT_EQ(quietUntil("811692800"), Date(1'790'000'000, 0));
    EXPECT_EQ(quietUntil("8.1169280025e8"), Date(1'790'000'000, 250'000'000));
    EXPECT_EQ(quietUntil("81169280025E-2"), Date(1'790'000'000, 250'000'000));
    EXPECT_EQ(quietUntil("-978307200.25"), Date(-1, 750'000'000));
    EXPECT_EQ(quietUntil("-0.0000000004"), Date(storedEpoch, 0));
    EXPECT_EQ(quietUntil("1e-400"), Date(storedEpoch, 0));
}

TEST(AlertPreferences, quietUntilIsReadAsEarlierVersionsWroteIt) {
    // To the nanosecond, more than a double holds.
    for (const auto& [number, date] :
         {std::pair{"811692800.123456789", Date(1'790'000'000, 123'456'789)},
          std::pair{"-0.5", Date(storedEpoch - 1, 500'000'000)},
          std::pair{"0.000000001", Date(storedEpoch, 1)},
          std::pair{"-9223372037833083008", Date(std::numeric_limits<std::int64_t>::min(), 0)}}) {
        const std::optional<Date> until = quietUntil(number);
        ASSERT_TRUE(until) << number;
        EXPECT_LE(std::abs((*until - date).count()), 1e-7) << number;
    }
}

TEST(AlertPreferences, quietUntilSaturates) {
    constexpr Date first(std::numeric_limits<std::int64_t>::min(), 0);
    constexpr Date last(std::numeric_limits<std::int64_t>::max(), 999'999'999);
    EXPECT_EQ(quietUntil("9223372035876468608"), last);
    EXPECT_EQ(quietUntil("123456789012345678901234567890"), last);
    EXPECT_EQ(quietUntil("1e300"), last);
    EXPECT_EQ(quietUntil("-9223372037833085000"), first);
    EXPECT_EQ(quietUntil("-1e300"), first);
}

TEST(AlertPreferences, aQuietUntilBeyondAllNumbersGivesTheDefaultsInFull) {
    for (const char* number : {"1e400", "-1e400", "9e99999999999999999999"}) {
        EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":5,"quietUntil":)") + number + "}"),
                  AlertPreferences())
            << number;
    }
}

TEST(AlertPreferences, aDocumentWithoutQuietUntilHasNoQuietPeriod) {
    EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":5})")), other());
    EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":5,"quietUntil":null})")), other());
}

TEST(AlertPreferences, anyMissingMemberGivesTheDefaultsInFull) {
    const std::pair<const char*, const char*> members[] = {{"waitingSound", R"("Hero")"},
                                                           {"doneSound", R"("Pop")"},
                                                           {"soundsOn", "false"},
                                                           {"alertWhenDone", "false"},
                                                           {"reminderMinutes", "5"}};
    for (const auto& [missing, ignored] : members) {
        std::string document;
        for (const auto& [name, value] : members) {
            if (name == missing) continue;
            document += (document.empty() ? "{\"" : ",\"") + std::string(name) + "\":" + value;
        }
        EXPECT_EQ(loaded(document + "}"), AlertPreferences()) << missing;
    }
}

TEST(AlertPreferences, anyMemberOfAWrongTypeGivesTheDefaultsInFull) {
    const std::string whole = documentUpTo(R"(,"reminderMinutes":5,"quietUntil":1)");
    ASSERT_NE(loaded(whole + "}"), AlertPreferences());
    // Of duplicate names the last one counts.
    for (const char* member : {R"("waitingSound":1)",        R"("waitingSound":null)",
                               R"("waitingSound":["Hero"])", R"("doneSound":true)",
                               R"("doneSound":null)",        R"("soundsOn":1)",
                               R"("soundsOn":"true")",       R"("soundsOn":null)",
                               R"("alertWhenDone":0)",       R"("alertWhenDone":{})",
                               R"("alertWhenDone":null)",    R"("reminderMinutes":5.5)",
                               R"("reminderMinutes":"5")",   R"("reminderMinutes":true)",
                               R"("reminderMinutes":null)",  R"("reminderMinutes":9223372036854775808)",
                               R"("reminderMinutes":1e30)",  R"("quietUntil":"1")",
                               R"("quietUntil":true)",       R"("quietUntil":[])",
                               R"("quietUntil":{})"}) {
        EXPECT_EQ(loaded(whole + "," + member + "}"), AlertPreferences()) << member;
    }
}

TEST(AlertPreferences, reminderMinutesMayBeWrittenAsADecimal) {
    for (const char* number : {"5", "5.0", "5e0", "50e-1"}) {
        EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":)") + number + "}"), other()) << number;
    }
}

TEST(AlertPreferences, textThatIsNoJsonObjectGivesTheDefaults) {
    const std::string whole = documentUpTo(R"(,"reminderMinutes":5})");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(loaded(whole.substr(0, length)), AlertPreferences()) << length;
    }
    for (const std::string& document : {std::string("null"), std::string("[]"), std::string("{}"),
                                        "[" + whole + "]", whole + "x", std::string("\"text\"")}) {
        EXPECT_EQ(loaded(document), AlertPreferences()) << document;
    }
    EXPECT_EQ(loaded("  " + whole + "\n"), other());
}

TEST(AlertPreferences, unknownMembersAreIgnored) {
    EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":5,"volume":[1e999,{"soundsOn":true}],"":null})")),
              other());
}

TEST(AlertPreferences, theLastOfDuplicateMembersCounts) {
    const std::string whole = documentUpTo(R"(,"reminderMinutes":true,"reminderMinutes":5)");
    EXPECT_EQ(loaded(whole + "}"), other());
    AlertPreferences expected = other();
    expected.waitingSound = "Ping";
    EXPECT_EQ(loaded(whole + R"(,"waitingSound":"Ping"})"), expected);
}

TEST(AlertPreferences, anUnknownSoundIsKept) {
    AlertPreferences expected = other();
    expected.waitingSound = "Foghorn";
    EXPECT_EQ(loaded(documentUpTo(R"(,"reminderMinutes":5,"waitingSound":"Foghorn"})")), expected);
}

TEST(AlertPreferences, valuesWithoutAJsonFormLeaveTheStoredOnesInPlace) {
    for (std::string AlertPreferences::*sound :
         {&AlertPreferences::waitingSound, &AlertPreferences::doneSound}) {
        MemoryUserDefaults defaults;
        other().save(defaults, key);
        AlertPreferences broken;
        broken.*sound = "\xFF";
        broken.save(defaults, key);
        EXPECT_EQ(AlertPreferences::load(defaults, key), other());
    }
}

} // namespace
} // namespace corvane
