#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvane::commandline {

/// The text to print instead of starting, if the program's arguments ask for one: the version or the usage,
/// without a line feed at the end. None otherwise. Pure.
[[nodiscard]] std::optional<std::string> answer(std::span<const char* const> arguments,
                                                std::string_view version);

} // namespace corvane::commandline
