#include "Support/Date.h"

#include <cmath>
#include <limits>

namespace corvane {

namespace {

constexpr std::int32_t nanosecondsPerSecond = 1'000'000'000;

} // namespace

Date Date::fromSystemClock(std::chrono::system_clock::time_point time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(time - whole);
    return {whole.time_since_epoch().count(), static_cast<std::int32_t>(rest.count())};
}

Seconds operator-(Date later, Date earlier) {
    std::int64_t whole = 0;
    if (__builtin_sub_overflow(later.seconds_, earlier.seconds_, &whole)) {
        return Seconds(static_cast<double>(later.seconds_) - static_cast<double>(earlier.seconds_));
    }
    // Both parts get the same sign, so that a small difference across a whole second keeps its digits.
    std::int32_t nanoseconds = later.nanoseconds_ - earlier.nanoseconds_;
    if (whole > 0 && nanoseconds < 0) {
        --whole;
        nanoseconds += nanosecondsPerSecond;
    } else if (whole < 0 && nanoseconds > 0) {
        ++whole;
        nanoseconds -= nanosecondsPerSecond;
    }
    return Seconds(static_cast<double>(whole) + static_cast<double>(nanoseconds) / nanosecondsPerSecond);
}

Date operator+(Date date, Seconds interval) {
    constexpr Date earliest(std::numeric_limits<std::int64_t>::min(), 0);
    constexpr Date latest(std::numeric_limits<std::int64_t>::max(), nanosecondsPerSecond - 1);

    const double whole = std::floor(interval.count());
    // A double can hold 2^63, but not 2^63 - 1.
    if (whole >= 0x1p63) return latest;
    if (whole < -0x1p63) return earliest;

    auto seconds = static_cast<std::int64_t>(whole);
    std::int64_t nanoseconds =
        date.nanoseconds_ + std::llround((interval.count() - whole) * nanosecondsPerSecond);
    const std::int64_t carry = nanoseconds / nanosecondsPerSecond;
    nanoseconds -= carry * nanosecondsPerSecond;

    // Cannot overflow: the largest double below 2^63 is more than a thousand smaller.
    seconds += carry;
    if (__builtin_add_overflow(date.seconds_, seconds, &seconds)) return whole < 0 ? earliest : latest;
    return {seconds, static_cast<std::int32_t>(nanoseconds)};
}

} // namespace corvane
