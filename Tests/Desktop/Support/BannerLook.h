#pragma once

#include "Desktop/Support/Picture.h"
#include "Desktop/Support/XObserver.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

/// What is wrong with the way the screen shows this banner: outline, fill, glyph, button or check mark in
/// another colour, or no text. None when all of it is visible, in the light or the dark appearance. A banner
/// that is still fading in is wrong.
[[nodiscard]] std::optional<std::string> bannerFault(const Picture& screen, const Banner& banner);

/// What is wrong with the positions of the banners, the highest first: each must be centred in `workArea`,
/// the first 8 pixels below its top, with 8 pixels between them. None when all are right.
[[nodiscard]] std::optional<std::string> layoutFault(const std::vector<Banner>& banners, Rect workArea);

/// Why the screen does not show exactly this many banners, all complete and at their places. None when it
/// does.
[[nodiscard]] std::optional<std::string> screenFault(const XObserver& x, std::size_t waiting,
                                                     std::size_t done);

/// The middle of a banner's buttons. Those of a waiting banner are found by the position of its texts on the
/// screen.
[[nodiscard]] Rect primaryButton(const Banner& banner);
[[nodiscard]] Rect closeButton(const Banner& banner);
[[nodiscard]] Rect snoozeButton(const Banner& banner);

/// "waiting" or "done".
[[nodiscard]] std::string name(BannerKind kind);

} // namespace corvane::test
