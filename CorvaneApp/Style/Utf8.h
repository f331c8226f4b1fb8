#pragma once

#include <QString>

#include <string_view>

namespace corvane {

/// The text that the UTF-8 bytes `text` stand for; U+FFFD for what is not valid UTF-8.
[[nodiscard]] inline QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace corvane
