#include "Recipes.h"

#include "Loudness.h"

#include <array>
#include <cmath>
#include <numbers>

namespace corvane::sounds {

namespace {

constexpr double turn = 2 * std::numbers::pi;

// Semitones above the A of 440 Hz.
constexpr int lowA = -24;
constexpr int a3 = -12;
constexpr int e4 = -5;
constexpr int a4 = 0;
constexpr int cSharp5 = 4;
constexpr int e5 = 7;
constexpr int a5 = 12;
constexpr int e6 = 19;
constexpr int e7 = 31;

// Phase, in turns, of the n-th of `count` harmonics that keeps the crest factor of their sum low (after
// Schroeder).
double spreadPhase(int n, int count) {
    return 0.5 * n * (n - 1) / count;
}

// A wine glass touched with a spoon. Its modes are not harmonic; each is a pair that beats slowly, since no
// glass is perfectly round.
Signal glass() {
    Signal signal = silence(1.2);
    constexpr std::array<double, 4> ratios{1, 2.32, 4.25, 6.63};
    constexpr std::array<double, 4> amplitudes{1, 0.42, 0.20, 0.07};
    constexpr std::array<double, 4> decays{0.27, 0.18, 0.10, 0.05};
    constexpr double beat = 1.3;
    for (std::size_t i = 0; i < ratios.size(); ++i) {
        const double frequency = note(e6) * ratios[i];
        addPartial(signal, 0, {frequency - beat, 0.6 * amplitudes[i], 0.003, decays[i]});
        addPartial(signal, 0, {frequency + beat, 0.4 * amplitudes[i], 0.003, decays[i]});
    }
    return signal;
}

// One clear note of a locator, and its echo from afar.
Signal ping() {
    Signal signal = silence(0.9);
    addPartial(signal, 0, {note(a5), 1, 0.004, 0.11});
    addPartial(signal, 0, {2 * note(a5), 0.30, 0.003, 0.07});
    addPartial(signal, 0, {3 * note(a5), 0.10, 0.002, 0.03});
    addEcho(signal, 0.24, 0.32);
    return signal;
}

// Three brass players enter one after the other and hold their chord; the higher harmonics come in later, as
// they do when lips build up a tone.
Signal hero() {
    Signal signal = silence(1.15);
    constexpr int harmonics = 9;
    const auto blow = [&signal](double start, int pitch, double amplitude) {
        for (int n = 1; n <= harmonics; ++n) {
            const double attack = 0.025 + 0.006 * n;
            const double hold = 0.42 - start;
            const double decay = 0.22 / (1 + 0.15 * n);
            addTone(
                signal, start, [&](double) { return n * note(pitch); },
                [&](double time) {
                    const double dying = time < hold ? 1 : std::exp(-(time - hold) / decay);
                    return amplitude * std::pow(n, -1.1) * softRise(time, attack) * dying;
                },
                spreadPhase(n, harmonics));
        }
    };
    blow(0, a4, 0.9);
    blow(0.10, cSharp5, 0.7);
    blow(0.20, e5, 0.8);
    return signal;
}

// A boat's horn under water: a tone that sinks by a fifth, trembling a little, and comes back from the sea
// bed.
Signal submarine() {
    Signal signal = silence(1.2);
    const Curve sinking = [](double time) {
        const double glide = note(a3) + (note(e4) - note(a3)) * std::exp(-time / 0.09);
        return glide * (1 + 0.006 * std::sin(turn * 5.5 * time));
    };
    constexpr std::array<double, 4> amplitudes{1, 0.55, 0.16, 0.05};
    for (std::size_t i = 0; i < amplitudes.size(); ++i) {
        const double n = static_cast<double>(i) + 1;
        addTone(
            signal, 0, [&](double time) { return n * sinking(time); },
            [&](double time) {
                return amplitudes[i] * softRise(time, 0.045) * std::exp(-time / (0.20 / std::sqrt(n)));
            },
            0.25 * static_cast<double>(i));
    }
    addEcho(signal, 0.36, 0.34);
    return signal;
}

// A content cat: a low voice whose breath opens and closes 24 times a second. Its strength lies between 200
// and 700 Hz, which small loudspeakers still reproduce.
Signal purr() {
    Signal signal = silence(0.95);
    constexpr int harmonics = 9;
    constexpr double flutter = 24;
    for (int n = 1; n <= harmonics; ++n) {
        const double formant = std::exp(-std::pow((n - 3.5) / 2.2, 2));
        addTone(
            signal, 0, [&](double) { return n * note(lowA); },
            [&](double time) {
                const double breath = 0.56 - 0.44 * std::cos(turn * flutter * time);
                const double swell = softRise(time, 0.12) * (1 - softRise(time - 0.45, 0.45));
                return formant * breath * swell;
            },
            spreadPhase(n, harmonics));
    }
    return signal;
}

// A bubble that rises and bursts: one tone that leaps up an octave and a half and is gone.
Signal pop() {
    Signal signal = silence(0.24);
    const Curve rising = [](double time) { return note(e5) - (note(e5) - 200) * std::exp(-time / 0.022); };
    for (int n = 1; n <= 2; ++n) {
        addTone(
            signal, 0, [&](double time) { return n * rising(time); },
            [&](double time) {
                return (n == 1 ? 1.0 : 0.18) * softRise(time, 0.012) * (1 - softRise(time - 0.055, 0.11));
            });
    }
    return signal;
}

// The tap of a finger nail on a small bell: the modes of a free bar, high and short.
Signal tink() {
    Signal signal = silence(0.45);
    addPartial(signal, 0, {note(e7), 1, 0.0015, 0.075});
    addPartial(signal, 0, {2.756 * note(e7), 0.35, 0.0015, 0.035});
    addPartial(signal, 0, {5.404 * note(e7), 0.10, 0.001, 0.012});
    return signal;
}

// Two muted notes of a bass through a wah pedal: a resonance sweeps up and down over many harmonics.
Signal funk() {
    Signal signal = silence(0.8);
    constexpr int harmonics = 16;
    const auto pluck = [&signal](double start, int pitch, double amplitude, double decay) {
        for (int n = 1; n <= harmonics; ++n) {
            const double frequency = n * note(pitch);
            addTone(
                signal, start, [&](double) { return frequency; },
                [&](double time) {
                    const double centre = 450 + 1900 * softRise(time, 0.05) * std::exp(-time / 0.09);
                    const double distance = std::log2(frequency / centre);
                    const double resonance = 0.22 + std::exp(-distance * distance / 0.35);
                    const double dying = softRise(time, 0.006) * std::exp(-time / decay);
                    return amplitude * resonance * std::pow(n, -0.8) * dying;
                });
        }
    };
    pluck(0, a3, 0.6, 0.07);
    pluck(0.15, e4, 0.8, 0.2);
    return signal;
}

} // namespace

const std::vector<Recipe>& recipes() {
    static const std::vector<Recipe> all{
        {"Glass", 0.25, glass}, {"Ping", 0.20, ping}, {"Hero", 0.20, hero}, {"Submarine", 0.20, submarine},
        {"Purr", 0.05, purr},   {"Pop", 0.03, pop},   {"Tink", 0.10, tink}, {"Funk", 0.15, funk},
    };
    return all;
}

Signal make(const Recipe& recipe) {
    Signal signal = recipe.make();
    finishEnds(signal, recipe.fade);
    setLoudness(signal, loudness);
    return signal;
}

} // namespace corvane::sounds
