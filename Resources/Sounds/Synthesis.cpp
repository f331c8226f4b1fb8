#include "Synthesis.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace corvane::sounds {

namespace {

constexpr double turn = 2 * std::numbers::pi;
constexpr double silentHead = 0.002;
constexpr double silentTail = 0.010;
constexpr double lowestFrequency = 20; // anything lower is inaudible and only costs headroom

std::size_t sampleAt(double seconds) {
    return static_cast<std::size_t>(std::lround(seconds * sampleRate));
}

} // namespace

Signal silence(double seconds) {
    Signal signal;
    signal.resize(sampleAt(seconds), 0.0);
    return signal;
}

double note(int semitones) {
    return 440.0 * std::exp2(semitones / 12.0);
}

double softRise(double time, double seconds) {
    if (time >= seconds) return 1;
    return time <= 0 ? 0 : 0.5 - 0.5 * std::cos(std::numbers::pi * time / seconds);
}

void addTone(Signal& signal, double start, const Curve& frequency, const Curve& amplitude, double phase) {
    const std::size_t first = sampleAt(start);
    for (std::size_t i = first; i < signal.size(); ++i) {
        const double time = static_cast<double>(i - first) / sampleRate;
        signal[i] += amplitude(time) * std::sin(turn * phase);
        phase += frequency(time) / sampleRate;
    }
}

void addPartial(Signal& signal, double start, const Partial& partial) {
    addTone(
        signal, start, [&](double) { return partial.frequency; },
        [&](double time) {
            return partial.amplitude * softRise(time, partial.attack) * std::exp(-time / partial.decay);
        },
        partial.phase);
}

void addEcho(Signal& signal, double delay, double gain) {
    const std::size_t shift = sampleAt(delay);
    for (std::size_t i = signal.size(); i-- > shift;) {
        signal[i] += gain * signal[i - shift];
    }
}

void finishEnds(Signal& signal, double fade) {
    const double pole = std::exp(-turn * lowestFrequency / sampleRate);
    double before = 0;
    double filtered = 0;
    for (double& sample : signal) {
        filtered = pole * (filtered + sample - before);
        before = sample;
        sample = filtered;
    }

    const std::size_t head = sampleAt(silentHead);
    signal.insert(signal.begin(), head, 0.0);
    signal.resize(signal.size() - head);

    const double end = static_cast<double>(signal.size()) / sampleRate - silentTail;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        signal[i] *= softRise(end - static_cast<double>(i) / sampleRate, fade);
    }
}

} // namespace corvane::sounds
