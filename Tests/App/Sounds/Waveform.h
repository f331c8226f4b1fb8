#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// The samples of one channel; full scale is 1.
struct Waveform {
    unsigned rate = 0; ///< samples per second
    std::vector<double> samples;

    [[nodiscard]] double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

/// Reads a WAV file of one channel and 16 bits per sample, and nothing else: the header must be the plain one
/// of 44 bytes, with sizes that match the file's. If there is no result, `problem` says why.
[[nodiscard]] std::optional<Waveform> readWav(std::string_view bytes, std::string& problem);

[[nodiscard]] double decibels(double amplitude);

/// Greatest absolute sample.
[[nodiscard]] double peak(const Waveform& wave);

/// Mean of all samples: the DC offset.
[[nodiscard]] double constantPart(const Waveform& wave);

/// Greatest loudness of any 400 ms according to ITU-R BS.1770, in LUFS, with silence around the sound.
[[nodiscard]] double momentaryLoudness(const Waveform& wave);

/// Greatest absolute sample between two points of time, in seconds; a negative one counts from the end.
[[nodiscard]] double peakBetween(const Waveform& wave, double from, double to);

/// Greatest level above 17 kHz, as a fraction of full scale. The sounds have no partials there, so it is high
/// only where the wave jumps or breaks off: a click.
[[nodiscard]] double clickLevel(const Waveform& wave);

/// Power-weighted mean frequency, in hertz.
[[nodiscard]] double spectralCentroid(const Waveform& wave);

/// Seconds from the beginning of the sound to the highest level, and from there to a tenth of it (-20 dB),
/// measured by the power in steps of 2 ms, smoothed over 10 ms.
[[nodiscard]] double attackTime(const Waveform& wave);
[[nodiscard]] double decayTime(const Waveform& wave);

/// The similarity of two sounds' spectrograms, from 0 to 1: the cosine of their amplitudes by half octave and
/// 46 ms, whatever their loudness. 1 for the same sound.
[[nodiscard]] double likeness(const Waveform& left, const Waveform& right);

/// Greatest normalised cross-correlation of `part` with `whole` when it begins at any of the samples from
/// `first` to `last`: 1 when it is there unchanged except for its level.
[[nodiscard]] double correlation(const Waveform& whole, const Waveform& part, std::size_t first,
                                 std::size_t last);

/// A sound's row in the table in Resources/Sounds/README.md, in the order of its columns: length in
/// milliseconds, centroid in hertz, attack and decay in milliseconds, peak in decibels of full scale.
[[nodiscard]] std::array<double, 5> figures(const Waveform& wave);

} // namespace corvane::test
