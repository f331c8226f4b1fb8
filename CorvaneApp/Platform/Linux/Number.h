#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace corvane {

/// Parses `text` as a decimal number; none unless all of it is a number in the type's range.
template <typename Number>
std::optional<Number> number(std::string_view text) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace corvane
