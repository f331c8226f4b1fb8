#pragma once

#include "Synthesis.h"

namespace corvane::sounds {

/// Greatest absolute value of a sample.
[[nodiscard]] double peak(const Signal& signal);

/// The perceived loudness of a short sound, in LUFS: the greatest momentary loudness (K-weighted power over
/// any 400 ms, with silence around the signal) of ITU-R BS.1770 and EBU Tech 3341, for one channel.
[[nodiscard]] double greatestMomentaryLoudness(const Signal& signal);

/// Scales the signal so that its greatest momentary loudness is `loudness`, in LUFS.
void setLoudness(Signal& signal, double loudness);

} // namespace corvane::sounds
