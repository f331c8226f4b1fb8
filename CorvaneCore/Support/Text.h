#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text as users see it. All strings are UTF-8; invalid UTF-8 is tolerated and never crashes.
namespace corvane::text {

/// `text` without spaces and tabs (bytes 0x20 and 0x09, nothing else) at either end.
[[nodiscard]] std::string_view trimmingSpacesAndTabs(std::string_view text);

/// `text` without characters of Unicode's White_Space property at either end.
[[nodiscard]] std::string_view trimmingWhitespace(std::string_view text);

/// Whether `text` contains `word` under full Unicode case folding, the same in every locale. `word` must
/// already be folded (lower case for ASCII).
[[nodiscard]] bool containsIgnoringCase(std::string_view text, std::string_view word);

/// The number of bytes that the first `count` user-perceived characters (extended grapheme clusters) of
/// `text` take; the whole size when there are no more than `count`.
[[nodiscard]] std::size_t prefixLength(std::string_view text, std::size_t count);

/// The longest prefix of `text`, and the longest suffix, of whole code points that fits into `size` bytes.
[[nodiscard]] std::string_view beginning(std::string_view text, std::size_t size);
[[nodiscard]] std::string_view end(std::string_view text, std::size_t size);

/// The last component of the file path `path`, trailing slashes ignored ("/w/shop/" gives "shop"); the whole
/// of `path` when that component is empty or "/". ".." is not resolved.
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// Whether every byte of `text` belongs to a valid UTF-8 sequence.
[[nodiscard]] bool isUtf8(std::string_view text);

} // namespace corvane::text
