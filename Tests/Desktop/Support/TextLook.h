#pragma once

#include "Desktop/Support/Picture.h"
#include "Desktop/Support/XObserver.h"

#include <cstdint>
#include <optional>
#include <string>

namespace corvane::test {

/// The two lines of a banner whose words can be recognised on the screen.
enum class BannerLine : std::uint8_t { title, subtitle };

/// Why this line of the banner does not show these words, in Inter or Noto Sans Mono: the words are drawn
/// with Qt and their pixels searched for. A subtitle may continue after them, with the separator and a
/// message; a title may not. None when the words are there.
[[nodiscard]] std::optional<std::string> wordsFault(const Picture& screen, const Banner& banner,
                                                    BannerLine line, const std::string& words);

} // namespace corvane::test
