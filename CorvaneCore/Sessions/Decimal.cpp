#include "Sessions/Decimal.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace corvane {

namespace {

constexpr std::int64_t decimalPlaces = 9;
constexpr std::uint32_t billion = 1'000'000'000;

// No number has so many digits that a larger exponent would still leave it between the smallest and the
// largest that are told apart here.
constexpr std::int64_t largestExponent = std::int64_t{1} << 48;

// 0.digits x 10^point, without zeros at either end of `digits`; zero has no digits.
struct Digits {
    bool isNegative = false;
    std::string digits;
    std::int64_t point = 0;

    // The digit that counts 10^(point - 1 - index).
    [[nodiscard]] std::uint32_t at(std::int64_t index) const {
        if (index < 0 || index >= static_cast<std::int64_t>(digits.size())) return 0;
        return static_cast<std::uint32_t>(digits[static_cast<std::size_t>(index)] - '0');
    }
};

std::int64_t exponent(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range)
        return text.starts_with('-') ? -largestExponent : largestExponent;
    return std::clamp(value, -largestExponent, largestExponent);
}

Digits parsed(std::string_view number) {
    Digits result;
    if (number.starts_with('-')) {
        result.isNegative = true;
        number.remove_prefix(1);
    }
    const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
    if (mantissa.size() < number.size()) result.point = exponent(number.substr(mantissa.size() + 1));

    const std::string_view whole = mantissa.substr(0, mantissa.find('.'));
    result.digits = whole;
    if (whole.size() < mantissa.size()) result.digits += mantissa.substr(whole.size() + 1);
    result.point += static_cast<std::int64_t>(whole.size());

    const std::size_t leadingZeros = std::min(result.digits.find_first_not_of('0'), result.digits.size());
    result.digits.erase(0, leadingZeros);
    result.point -= static_cast<std::int64_t>(leadingZeros);
    result.digits.erase(result.digits.find_last_not_of('0') + 1);
    return result;
}

// The part before the point; none when it does not fit.
std::optional<std::uint64_t> wholePart(const Digits& number) {
    constexpr std::int64_t mostDigits = std::numeric_limits<std::uint64_t>::digits10 + 1;
    if (number.digits.empty()) return 0;
    if (number.point > mostDigits) return std::nullopt;
    std::uint64_t value = 0;
    for (std::int64_t i = 0; i < number.point; ++i) {
        if (__builtin_mul_overflow(value, 10U, &value) ||
            __builtin_add_overflow(value, number.at(i), &value)) {
            return std::nullopt;
        }
    }
    return value;
}

} // namespace

Decimal Decimal::fromNumber(std::string_view number) {
    const Digits digits = parsed(number);
    const Decimal largest{digits.isNegative, std::numeric_limits<std::uint64_t>::max(), billion - 1};
    const std::optional<std::uint64_t> whole = wholePart(digits);
    if (!whole) return largest;

    Decimal result{digits.isNegative && !digits.digits.empty(), *whole, 0};
    for (std::int64_t i = 0; i < decimalPlaces; ++i) {
        result.billionths = result.billionths * 10 + digits.at(digits.point + i);
    }
    constexpr std::uint32_t half = 5;
    if (digits.at(digits.point + decimalPlaces) < half || ++result.billionths < billion) return result;
    result.billionths = 0;
    return __builtin_add_overflow(result.whole, 1U, &result.whole) ? largest : result;
}

std::optional<std::int64_t> integerFromNumber(std::string_view number) {
    const Digits digits = parsed(number);
    if (static_cast<std::int64_t>(digits.digits.size()) > std::max<std::int64_t>(digits.point, 0)) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> magnitude = wholePart(digits);
    constexpr std::uint64_t mostNegative = std::uint64_t{1} << 63U;
    if (!magnitude || *magnitude > (digits.isNegative ? mostNegative : mostNegative - 1)) return std::nullopt;
    // Conversion to a signed type is modulo 2^64, also for the most negative value.
    return static_cast<std::int64_t>(digits.isNegative ? 0 - *magnitude : *magnitude);
}

} // namespace corvane
