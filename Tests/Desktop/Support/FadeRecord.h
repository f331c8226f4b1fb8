#pragma once

#include "Desktop/Support/DesktopSession.h"

#include <chrono>
#include <functional>
#include <vector>

namespace corvane::test {

/// A banner's position and opacity at one moment.
struct FadeSample {
    std::chrono::steady_clock::time_point when;
    bool isMapped = false;
    int top = 0;                         ///< of the card, in screen pixels
    double opacity = 0;                  ///< 0 to 1, by what its fill lets through
    std::chrono::nanoseconds starved{0}; ///< for how long the programs involved had waited for a processor
};

/// Watches the one banner whose card ends up at `card`, every few milliseconds until `isOver` returns true
/// for the samples so far, or ten seconds have passed. Nothing else may be there.
///
/// Opacity is measured at one pixel that every card fills with its surface only; `wallpaper` is the colour
/// there without a banner.
[[nodiscard]] std::vector<FadeSample>
recordFade(DesktopSession& desktop, Rect card, Color wallpaper,
           const std::function<bool(const std::vector<FadeSample>&)>& isOver);

/// Whether no pause in the sampling and no waiting for a processor has disturbed the fade by more than a few
/// of its steps: only then do the samples show what the application does.
[[nodiscard]] bool isUndisturbed(const std::vector<FadeSample>& samples);

/// The pixel that `recordFade` looks at.
[[nodiscard]] Rect fadeProbe(Rect card);

/// From the last sample below 2 % to the first one of at least 98 %, or the other way round.
[[nodiscard]] std::chrono::milliseconds fadeLength(const std::vector<FadeSample>& samples);

/// The largest step of opacity against `direction`, which is +1 for a fade in and -1 for a fade out.
[[nodiscard]] double largestRelapse(const std::vector<FadeSample>& samples, int direction);

/// The number of samples that are neither invisible nor opaque.
[[nodiscard]] std::size_t stepsBetween(const std::vector<FadeSample>& samples);

} // namespace corvane::test
