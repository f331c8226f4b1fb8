#pragma once

#include <chrono>
#include <compare>
#include <cstdint>

namespace corvane {

/// A span of time in seconds; may be negative. Every interval of the system has this type.
using Seconds = std::chrono::duration<double>;

/// An absolute point in time with nanosecond resolution.
///
/// Whole seconds are kept apart from the fraction, so that every timestamp a file system can hold fits, even
/// one thousands of years away, and two timestamps a nanosecond apart stay distinct. A plain value; compares
/// in order of time. Nothing here reads a clock: the caller passes the time.
class Date {
  public:
    /// 1970-01-01 00:00:00 UTC.
    constexpr Date() = default;

    /// `seconds` since 1970-01-01 00:00:00 UTC plus `nanoseconds`, which must be in 0 ..< 1'000'000'000.
    constexpr Date(std::int64_t seconds, std::int32_t nanoseconds)
        : seconds_(seconds)
        , nanoseconds_(nanoseconds) {}

    /// 0001-01-01 00:00:00 UTC: sorts before every date that happens in practice.
    static constexpr Date distantPast() { return {-62'135'596'800, 0}; }

    static Date fromSystemClock(std::chrono::system_clock::time_point time);

    /// Whole seconds since 1970, rounded down.
    [[nodiscard]] constexpr std::int64_t seconds() const { return seconds_; }

    /// The fraction above `seconds()`, 0 ..< 1'000'000'000.
    [[nodiscard]] constexpr std::int32_t nanoseconds() const { return nanoseconds_; }

    // NOLINTNEXTLINE(modernize-use-nullptr): taken for a null pointer by clang-tidy 14.
    constexpr auto operator<=>(const Date&) const = default;

    /// The time from `earlier` to `later`; exact to the resolution of a double, and always of the right sign.
    friend Seconds operator-(Date later, Date earlier);

    /// Rounds to the nearest nanosecond and saturates at the ends of the range, as an interval of 2^63
    /// seconds or more always does. `interval` must not be NaN.
    friend Date operator+(Date date, Seconds interval);
    friend Date operator-(Date date, Seconds interval) { return date + -interval; }

  private:
    std::int64_t seconds_ = 0;
    std::int32_t nanoseconds_ = 0;
};

} // namespace corvane
