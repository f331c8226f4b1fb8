#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvane::text {

/// The width of a text when drawn, in any unit; grows with the text.
using Measure = std::function<double(std::string_view)>;

/// `text` unchanged if it is no wider than `width`, else its beginning and its end with "…" between them, as
/// many user-perceived characters as fit, the odd one at the beginning; at least the "…". Of a text far
/// longer than any line, only the two ends are measured.
[[nodiscard]] std::string elidingMiddle(std::string_view text, double width, const Measure& measure);

} // namespace corvane::text
