#pragma once

#include <string>
#include <string_view>

/// The grammar of single JSON tokens, which simdjson's On-Demand interface leaves unchecked for values that
/// are not converted. Checking the escapes in place, 256 bytes at a time, is what makes EventPayload twice as
/// fast on long texts as simdjson's document parser, which copies every string; see there for the figures.
/// All functions take time linear in the size of their argument.
namespace corvane::jsontokens {

/// `token` without JSON white space (space, tab, line feed, carriage return) at its end.
[[nodiscard]] std::string_view trimmingEnd(std::string_view token);

/// Whether `token` is a number by the grammar of RFC 8259, of any length and size.
[[nodiscard]] bool isNumber(std::string_view token);

/// Whether every escape in `literal`, the text between the quotes of a string, is valid. Checks nothing but
/// escapes.
[[nodiscard]] bool hasValidEscapes(std::string_view literal);

/// The string that `literal` represents, in UTF-8, with U+FFFD for each unpaired surrogate, which JavaScript
/// escapes when text was cut inside a character. `literal` must have valid escapes.
[[nodiscard]] std::string unescaped(std::string_view literal);

} // namespace corvane::jsontokens
