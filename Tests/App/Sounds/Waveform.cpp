#include "App/Sounds/Waveform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>

namespace corvane::test {

namespace {

using Spectrum = std::vector<std::complex<double>>;

std::uint32_t number(std::string_view bytes, std::size_t at, int count) {
    std::uint32_t result = 0;
    for (int i = 0; i < count; ++i) {
        result |=
            static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]))
            << (8 * i);
    }
    return result;
}

// In place; the size is a power of two.
void transform(Spectrum& values) {
    const std::size_t size = values.size();
    for (std::size_t i = 1, j = 0; i < size; ++i) {
        std::size_t bit = size >> 1;
        for (; (j & bit) != 0; bit >>= 1) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) std::swap(values[i], values[j]);
    }
    for (std::size_t length = 2; length <= size; length <<= 1) {
        const std::complex<double> root =
            std::polar(1.0, -2 * std::numbers::pi / static_cast<double>(length));
        for (std::size_t start = 0; start < size; start += length) {
            std::complex<double> factor = 1;
            for (std::size_t i = start; i < start + length / 2; ++i) {
                const std::complex<double> odd = factor * values[i + length / 2];
                values[i + length / 2] = values[i] - odd;
                values[i] += odd;
                factor *= root;
            }
        }
    }
}

// Frequency of the k-th of `size` bins, as the fraction of the sample rate.
double binFrequency(const Waveform& wave, std::size_t bin, std::size_t size) {
    return static_cast<double>(bin) * wave.rate / static_cast<double>(size);
}

// The frequency weighting of BS.1770 as one response, from the analogue filters behind the standard's
// coefficients: power gain at `frequency`.
double weightedPower(double frequency) {
    const auto response = [frequency](double corner, double quality, std::array<double, 3> numerator) {
        const std::complex<double> s(0, frequency / corner);
        return (numerator[2] * s * s + numerator[1] * s / quality + numerator[0]) /
               (s * s + s / quality + 1.0);
    };
    const double high = std::pow(10, 3.999843853973347 / 20);
    const double band = std::pow(high, 0.4996667741545416);
    return std::norm(response(1681.974450955533, 0.7071752369554196, {1, band, high}) *
                     response(38.13547087602444, 0.5003270373238773, {0, 0, 1}));
}

// Power in steps of 2 ms, smoothed over 10 ms.
std::vector<double> envelope(const Waveform& wave) {
    const std::size_t step = wave.rate / 500;
    const std::size_t count = wave.samples.size() / step;
    std::vector<double> result;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t from = (i < 2 ? 0 : i - 2) * step;
        const std::size_t to = std::min(wave.samples.size(), (i + 3) * step);
        double power = 0;
        for (std::size_t j = from; j < to; ++j) {
            power += wave.samples[j] * wave.samples[j];
        }
        result.push_back(power / static_cast<double>(to - from));
    }
    return result;
}

std::vector<double> picture(const Waveform& wave) {
    constexpr std::size_t size = 2048;
    constexpr std::size_t frames = 27;
    constexpr std::size_t bands = 16;
    std::vector<double> result;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        Spectrum values(size);
        for (std::size_t i = 0; i < size && frame * size + i < wave.samples.size(); ++i) {
            const double window = std::sin(std::numbers::pi * static_cast<double>(i) / size);
            values[i] = window * wave.samples[frame * size + i];
        }
        transform(values);
        std::array<double, bands> powers{};
        for (std::size_t bin = 2; bin < size / 2; ++bin) {
            const double band = 2 * std::log2(binFrequency(wave, bin, size) / 60);
            if (band >= 0 && band < bands)
                powers.at(static_cast<std::size_t>(band)) += std::norm(values[bin]);
        }
        for (const double power : powers) {
            result.push_back(std::sqrt(power));
        }
    }
    return result;
}

double sumOfProducts(const double* left, const double* right, std::size_t count) {
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        sum += left[i] * right[i];
    }
    return sum;
}

std::size_t sampleAt(const Waveform& wave, double seconds) {
    const double count = seconds < 0 ? wave.seconds() + seconds : seconds;
    const auto index = static_cast<std::size_t>(std::lround(std::max(0.0, count) * wave.rate));
    return std::min(index, wave.samples.size());
}

} // namespace

std::optional<Waveform> readWav(std::string_view bytes, std::string& problem) {
    constexpr std::size_t headerSize = 44;
    const auto fail = [&problem](std::string text) {
        problem = std::move(text);
        return std::nullopt;
    };
    if (bytes.size() < headerSize) return fail("shorter than a header");
    if (bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 8) != "WAVEfmt ") return fail("not a WAV file");
    if (number(bytes, 4, 4) != bytes.size() - 8) return fail("the outer size is wrong");
    if (number(bytes, 16, 4) != 16 || number(bytes, 20, 2) != 1) return fail("not plain samples");
    if (number(bytes, 22, 2) != 1) return fail("more than one channel");
    if (number(bytes, 34, 2) != 16 || number(bytes, 32, 2) != 2) return fail("not 16 bits a sample");
    const std::uint32_t rate = number(bytes, 24, 4);
    if (number(bytes, 28, 4) != rate * 2) return fail("the byte rate is wrong");
    if (bytes.substr(36, 4) != "data") return fail("the samples do not follow the format");
    if (number(bytes, 40, 4) != bytes.size() - headerSize || bytes.size() % 2 != 0)
        return fail("the inner size is wrong");

    Waveform wave;
    wave.rate = rate;
    for (std::size_t at = headerSize; at < bytes.size(); at += 2) {
        wave.samples.push_back(static_cast<std::int16_t>(number(bytes, at, 2)) / 32768.0);
    }
    return wave;
}

double decibels(double amplitude) {
    return 20 * std::log10(amplitude);
}

double peak(const Waveform& wave) {
    return peakBetween(wave, 0, wave.seconds());
}

double constantPart(const Waveform& wave) {
    double sum = 0;
    for (const double sample : wave.samples) {
        sum += sample;
    }
    return sum / static_cast<double>(wave.samples.size());
}

double momentaryLoudness(const Waveform& wave) {
    // Weighted in the frequency domain, so that nothing here is shared with the filters of the recipe.
    const std::size_t window = wave.rate * 2 / 5;
    std::size_t size = 1;
    while (size < wave.samples.size() + 2 * window) {
        size *= 2;
    }
    Spectrum values(size);
    std::copy(wave.samples.begin(), wave.samples.end(), values.begin());
    transform(values);
    for (std::size_t bin = 0; bin < size; ++bin) {
        const double frequency = binFrequency(wave, std::min(bin, size - bin), size);
        values[bin] = std::conj(values[bin] * std::sqrt(weightedPower(frequency)));
    }
    transform(values); // of the conjugate: the inverse transform

    double greatest = 0;
    double energy = 0;
    for (std::size_t i = 0; i < wave.samples.size() + window; ++i) {
        energy += std::norm(values[i]);
        if (i >= window) energy -= std::norm(values[i - window]);
        greatest = std::max(greatest, energy);
    }
    const double scale = static_cast<double>(size) * static_cast<double>(size) * static_cast<double>(window);
    return -0.691 + 10 * std::log10(greatest / scale);
}

double peakBetween(const Waveform& wave, double from, double to) {
    double greatest = 0;
    for (std::size_t i = sampleAt(wave, from); i < sampleAt(wave, to); ++i) {
        greatest = std::max(greatest, std::abs(wave.samples[i]));
    }
    return greatest;
}

double clickLevel(const Waveform& wave) {
    constexpr std::size_t reach = 40;
    const double cutoff = 17000.0 / wave.rate;
    std::array<double, 2 * reach + 1> taps{};
    for (std::size_t i = 0; i < taps.size(); ++i) {
        const double turn = std::numbers::pi * (static_cast<double>(i) - reach);
        const double low = i == reach ? 2 * cutoff : std::sin(2 * cutoff * turn) / turn;
        const double angle = turn / (reach + 1);
        const double window = 0.42 + 0.5 * std::cos(angle) + 0.08 * std::cos(2 * angle);
        taps.at(i) = ((i == reach ? 1 : 0) - low) * window;
    }
    std::vector<double> padded(reach, 0.0);
    padded.insert(padded.end(), wave.samples.begin(), wave.samples.end());
    padded.resize(padded.size() + reach, 0.0);
    double greatest = 0;
    for (std::size_t i = 0; i < wave.samples.size(); ++i) {
        greatest = std::max(greatest, std::abs(sumOfProducts(padded.data() + i, taps.data(), taps.size())));
    }
    return greatest;
}

double spectralCentroid(const Waveform& wave) {
    std::size_t size = 1;
    while (size < wave.samples.size()) {
        size *= 2;
    }
    Spectrum values(size);
    std::copy(wave.samples.begin(), wave.samples.end(), values.begin());
    transform(values);
    double power = 0;
    double weighted = 0;
    for (std::size_t bin = 1; bin < size / 2; ++bin) {
        power += std::norm(values[bin]);
        weighted += std::norm(values[bin]) * binFrequency(wave, bin, size);
    }
    return weighted / power;
}

double attackTime(const Waveform& wave) {
    const std::vector<double> levels = envelope(wave);
    const auto highest = std::max_element(levels.begin(), levels.end());
    const auto first =
        std::find_if(levels.begin(), levels.end(), [&](double level) { return level > *highest * 1e-4; });
    return static_cast<double>(highest - first) * 0.002;
}

double decayTime(const Waveform& wave) {
    const std::vector<double> levels = envelope(wave);
    const auto highest = std::max_element(levels.begin(), levels.end());
    const auto last =
        std::find_if(levels.rbegin(), levels.rend(), [&](double level) { return level > *highest * 1e-2; });
    return static_cast<double>(last.base() - 1 - highest) * 0.002;
}

double likeness(const Waveform& left, const Waveform& right) {
    const std::vector<double> a = picture(left);
    const std::vector<double> b = picture(right);
    return sumOfProducts(a.data(), b.data(), a.size()) /
           std::sqrt(sumOfProducts(a.data(), a.data(), a.size()) *
                     sumOfProducts(b.data(), b.data(), b.size()));
}

double correlation(const Waveform& whole, const Waveform& part, std::size_t first, std::size_t last) {
    const std::size_t count = part.samples.size();
    const double* sought = part.samples.data();
    const double power = sumOfProducts(sought, sought, count);
    double greatest = 0;
    for (std::size_t at = first; at <= last && at + count <= whole.samples.size(); ++at) {
        const double* found = whole.samples.data() + at;
        const double foundPower = sumOfProducts(found, found, count);
        if (foundPower <= 0) continue;
        greatest = std::max(greatest, sumOfProducts(found, sought, count) / std::sqrt(power * foundPower));
    }
    return greatest;
}

std::array<double, 5> figures(const Waveform& wave) {
    return {wave.seconds() * 1000, spectralCentroid(wave), attackTime(wave) * 1000, decayTime(wave) * 1000,
            decibels(peak(wave))};
}

} // namespace corvane::test
