#include "Loudness.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace corvane::sounds {

namespace {

struct Biquad {
    double b0, b1, b2, a1, a2;

    [[nodiscard]] Signal filtered(const Signal& signal) const {
        Signal result(signal.size());
        double first = 0;
        double second = 0;
        for (std::size_t i = 0; i < signal.size(); ++i) {
            result[i] = b0 * signal[i] + first;
            first = b1 * signal[i] - a1 * result[i] + second;
            second = b2 * signal[i] - a2 * result[i];
        }
        return result;
    }
};

// BS.1770 lists the two filters for 48 kHz only. These are the analogue filters behind its coefficients,
// converted to our sample rate.

Biquad headShelf() {
    constexpr double frequency = 1681.974450955533;
    constexpr double decibels = 3.999843853973347;
    constexpr double quality = 0.7071752369554196;
    const double k = std::tan(std::numbers::pi * frequency / sampleRate);
    const double high = std::pow(10, decibels / 20);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1 + k / quality + k * k;
    return {(high + band * k / quality + k * k) / a0, 2 * (k * k - high) / a0,
            (high - band * k / quality + k * k) / a0, 2 * (k * k - 1) / a0, (1 - k / quality + k * k) / a0};
}

Biquad lowCut() {
    constexpr double frequency = 38.13547087602444;
    constexpr double quality = 0.5003270373238773;
    const double k = std::tan(std::numbers::pi * frequency / sampleRate);
    const double a0 = 1 + k / quality + k * k;
    return {1, -2, 1, 2 * (k * k - 1) / a0, (1 - k / quality + k * k) / a0};
}

} // namespace

double peak(const Signal& signal) {
    double greatest = 0;
    for (const double sample : signal) {
        greatest = std::max(greatest, std::abs(sample));
    }
    return greatest;
}

double greatestMomentaryLoudness(const Signal& signal) {
    constexpr auto window = static_cast<std::size_t>(0.4 * sampleRate);
    Signal padded(signal);
    padded.resize(signal.size() + window, 0.0);
    const Signal weighted = lowCut().filtered(headShelf().filtered(padded));

    double energy = 0;
    double greatest = 0;
    for (std::size_t i = 0; i < weighted.size(); ++i) {
        energy += weighted[i] * weighted[i];
        if (i >= window) energy -= weighted[i - window] * weighted[i - window];
        greatest = std::max(greatest, energy);
    }
    return -0.691 + 10 * std::log10(greatest / static_cast<double>(window));
}

void setLoudness(Signal& signal, double loudness) {
    const double gain = std::pow(10, (loudness - greatestMomentaryLoudness(signal)) / 20);
    for (double& sample : signal) {
        sample *= gain;
    }
}

} // namespace corvane::sounds
