#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvane::commandline {

/// What the program's arguments ask to be printed instead of a start: the version or the usage, without a
/// line feed at the end. None if they ask for neither. Pure.
[[nodiscard]] std::optional<std::string> answer(std::span<const char* const> arguments,
                                                std::string_view version);

} // namespace corvane::commandline
