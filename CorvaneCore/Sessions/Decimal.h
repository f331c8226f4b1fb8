#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// A decimal number in fixed point, nine places after the point. A plain value.
struct Decimal {
    bool isNegative = false;
    std::uint64_t whole = 0;      ///< magnitude of the part before the point
    std::uint32_t billionths = 0; ///< magnitude of the part after it, below 1'000'000'000

    bool operator==(const Decimal&) const = default;

    /// Reads a number in JSON's grammar without a detour through floating point: exact where nine places are
    /// enough, else rounded to the nearest one (ties away from zero). Beyond 64 bits it stops at the largest
    /// value.
    [[nodiscard]] static Decimal fromNumber(std::string_view number);
};

/// The value of a number in JSON's grammar that is an integer however it is written: "5", "5.0", "50e-1".
/// None when it has a fraction, be it ever so small, or does not fit.
[[nodiscard]] std::optional<std::int64_t> integerFromNumber(std::string_view number);

} // namespace corvane
