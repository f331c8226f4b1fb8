#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// The samples of one channel; full scale is 1.
struct Waveform {
    unsigned rate = 0; ///< samples a second
    std::vector<double> samples;

    [[nodiscard]] double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

/// Reads a WAV file of one channel and 16 bits a sample, and nothing else: the header must be the plain one
/// of 44 bytes whose sizes agree with the file's. `problem` says what is wrong when there is no result.
[[nodiscard]] std::optional<Waveform> readWav(std::string_view bytes, std::string& problem);

[[nodiscard]] double decibels(double amplitude);

/// Greatest absolute sample.
[[nodiscard]] double peak(const Waveform& wave);

/// Mean of all samples: the constant part.
[[nodiscard]] double constantPart(const Waveform& wave);

/// Greatest loudness of any 400 ms after ITU-R BS.1770, in LUFS, with silence around the sound.
[[nodiscard]] double momentaryLoudness(const Waveform& wave);

/// Greatest absolute sample between two points of time, in seconds; a negative one counts from the end.
[[nodiscard]] double peakBetween(const Waveform& wave, double from, double to);

/// Greatest level, in parts of full scale, of what lies above 17 kHz. The sounds have no partial up there, so
/// something is left only where the wave jumps or breaks off: a click.
[[nodiscard]] double clickLevel(const Waveform& wave);

/// Power-weighted mean frequency, in hertz.
[[nodiscard]] double spectralCentroid(const Waveform& wave);

/// Seconds from the first sound to the highest level, and from there to a tenth of it (-20 dB), read from the
/// power in steps of 2 ms, smoothed over 10 ms.
[[nodiscard]] double attackTime(const Waveform& wave);
[[nodiscard]] double decayTime(const Waveform& wave);

/// How alike two sounds are in what sounds when, from 0 to 1: the cosine between their pictures of amplitude
/// by half octave and 46 ms, whatever their loudness. 1 for the same sound.
[[nodiscard]] double likeness(const Waveform& left, const Waveform& right);

/// Greatest normalised cross-correlation of `part` with `whole` when it begins at any of the samples from
/// `first` to `last`: 1 when it is found there unchanged, but for its level.
[[nodiscard]] double correlation(const Waveform& whole, const Waveform& part, std::size_t first,
                                 std::size_t last);

} // namespace corvane::test
