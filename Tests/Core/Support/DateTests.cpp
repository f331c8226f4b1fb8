#include "Support/Date.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace corvane {
namespace {

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr Date first(smallest, 0);
constexpr Date last(largest, 999'999'999);

TEST(Date, startsAtTheUnixEpoch) {
    EXPECT_EQ(Date(), Date(0, 0));
    EXPECT_EQ(Date(5, 7).seconds(), 5);
    EXPECT_EQ(Date(5, 7).nanoseconds(), 7);
}

TEST(Date, comparesInOrderOfTimeToTheNanosecond) {
    EXPECT_LT(Date(1, 999'999'999), Date(2, 0));
    EXPECT_LT(Date(1, 1), Date(1, 2));
    EXPECT_LT(Date(-1, 999'999'999), Date(0, 0));
    EXPECT_GT(Date(0, 0), Date(-1, 0));
    EXPECT_EQ(Date(3, 4), Date(3, 4));
    EXPECT_LT(first, Date::distantPast());
    EXPECT_LT(Date::distantPast(), Date(-62'135'596'799, 0));
}

TEST(Date, distantPastIsTheFirstDayOfTheFirstYear) {
    const auto day = std::chrono::sys_days(std::chrono::year(1) / 1 / 1);
    EXPECT_EQ(Date::distantPast().seconds(), std::chrono::seconds(day.time_since_epoch()).count());
}

TEST(Date, readsTheSystemClocksTimesBeforeAndAfterTheEpoch) {
    using Clock = std::chrono::system_clock;
    const auto time = [](std::chrono::milliseconds sinceEpoch) { return Clock::time_point(sinceEpoch); };
    EXPECT_EQ(Date::fromSystemClock(time(std::chrono::milliseconds(1'500))), Date(1, 500'000'000));
    EXPECT_EQ(Date::fromSystemClock(time(std::chrono::milliseconds(-1))), Date(-1, 999'000'000));
    EXPECT_EQ(Date::fromSystemClock(time(std::chrono::milliseconds(0))), Date());
}

TEST(Date, differenceIsInSeconds) {
    EXPECT_EQ(Date(1800, 1'000'000) - Date(0, 0), Seconds(1800.001));
    EXPECT_EQ(Date(0, 0) - Date(5, 250'000'000), Seconds(-5.25));
    EXPECT_EQ(Date(7, 7) - Date(7, 7), Seconds(0));
    EXPECT_EQ(Date(20, 500) - Date(0, 500), Seconds(20));
}

TEST(Date, differenceIsExactToTheNanosecond) {
    EXPECT_GT(Date(43'200, 1) - Date(0, 0), Seconds(43'200));
    EXPECT_LT(Date(43'200, 0) - Date(0, 1), Seconds(43'200));
    EXPECT_EQ(Date(1'790'000'000, 1) - Date(1'790'000'000, 0), Seconds(1e-9));
    EXPECT_EQ(Date(1'790'000'001, 0) - Date(1'790'000'000, 999'999'999), Seconds(1e-9));
    EXPECT_EQ(Date(1'790'000'000, 999'999'999) - Date(1'790'000'001, 0), Seconds(-1e-9));
}

TEST(Date, differenceCoversTheWholeRange) {
    EXPECT_EQ(last - first, Seconds(0x1p64));
    EXPECT_EQ(first - last, Seconds(-0x1p64));
}

TEST(Date, addsSecondsAndCarries) {
    EXPECT_EQ(Date(10, 600'000'000) + Seconds(0.5), Date(11, 100'000'000));
    EXPECT_EQ(Date(10, 600'000'000) + Seconds(-0.75), Date(9, 850'000'000));
    EXPECT_EQ(Date(10, 600'000'000) - Seconds(300), Date(-290, 600'000'000));
    EXPECT_EQ(Date(10, 0) + Seconds(0), Date(10, 0));
    EXPECT_EQ(Date(0, 999'999'999) + Seconds(1e-9), Date(1, 0));
    EXPECT_EQ(Date(0, 0) + Seconds(-1e-9), Date(-1, 999'999'999));
}

TEST(Date, addsToTheNearestNanosecond) {
    EXPECT_EQ(Date(0, 0) + Seconds(1.4e-9), Date(0, 1));
    EXPECT_EQ(Date(0, 0) + Seconds(1.6e-9), Date(0, 2));
    EXPECT_EQ(Date(0, 0) + Seconds(-1e-20), Date(0, 0));
    EXPECT_EQ(Date(0, 0) + Seconds(0.999'999'999'9), Date(1, 0));
}

TEST(Date, additionSaturates) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(last + Seconds(1), last);
    EXPECT_EQ(last + Seconds(1e-9), last);
    EXPECT_EQ(first - Seconds(1), first);
    EXPECT_EQ(Date() + Seconds(infinity), last);
    EXPECT_EQ(Date() - Seconds(infinity), first);
    EXPECT_EQ(Date() + Seconds(1e300), last);
    EXPECT_EQ(Date(-1, 0) + Seconds(-0x1p63), first);
    EXPECT_EQ(Date(0, 0) + Seconds(-0x1p63), first);
    EXPECT_EQ(Date(smallest, 5) + Seconds(-1e-20), Date(smallest, 5));
    EXPECT_EQ(Date(largest, 5) + Seconds(-1), Date(largest - 1, 5));
}

TEST(Date, addingAndSubtractingAnIntervalCancelOut) {
    const Date date(1'790'000'000, 123'456'789);
    for (const double interval : {0.001, 1.0, 59.9, 3600.25, 86'400.0, 1e9}) {
        EXPECT_EQ(date + Seconds(interval) - Seconds(interval), date) << interval;
        EXPECT_EQ(date - Seconds(interval) + Seconds(interval), date) << interval;
    }
}

} // namespace
} // namespace corvane
