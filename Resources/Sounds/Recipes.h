#pragma once

#include "Synthesis.h"

#include <string_view>
#include <vector>

namespace corvane::sounds {

/// One of the named sounds and how it is made.
struct Recipe {
    std::string_view name;
    double fade;      ///< seconds of the final fade-out
    Signal (*make)(); ///< the raw signal, at most 1.2 s, in any loudness
};

/// All sounds. Their notes are from one pentatonic scale (A major), so that two played together are in tune.
[[nodiscard]] const std::vector<Recipe>& recipes();

/// The sound ready to be played: ends silent, and as loud as every other one.
[[nodiscard]] Signal make(const Recipe& recipe);

constexpr double loudness = -20;     ///< LUFS, the greatest momentary loudness of every sound
constexpr double highestPeak = 0.45; ///< of full scale: two sounds at once do not clip

} // namespace corvane::sounds
