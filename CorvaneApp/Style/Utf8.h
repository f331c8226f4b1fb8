#pragma once

#include <QString>

#include <string_view>

namespace corvane {

/// Decodes the UTF-8 bytes `text`; invalid sequences become U+FFFD.
[[nodiscard]] inline QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace corvane
