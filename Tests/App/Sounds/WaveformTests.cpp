// Tests the measurements themselves, on waves whose values are known.

#include "App/Sounds/Waveform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::test {

namespace {

Waveform sine(double frequency, double amplitude, double seconds) {
    Waveform wave;
    wave.rate = 44100;
    const auto count = static_cast<std::size_t>(seconds * wave.rate);
    for (std::size_t i = 0; i < count; ++i) {
        wave.samples.push_back(
            amplitude * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / wave.rate));
    }
    return wave;
}

// A tone that fades in and out smoothly.
Waveform swell(double frequency, double amplitude, double seconds) {
    Waveform wave = sine(frequency, amplitude, seconds);
    for (std::size_t i = 0; i < wave.samples.size(); ++i) {
        const double turn =
            2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(wave.samples.size());
        wave.samples[i] *= 0.5 - 0.5 * std::cos(turn);
    }
    return wave;
}

std::string wavBytes() {
    return {"RIFF\x28\0\0\0WAVEfmt "
            "\x10\0\0\0\x01\0\x01\0\x44\xAC\0\0\x88\x58\x01\0\x02\0\x10\0data\x04\0\0\0\0\x40\0\xC0",
            48};
}

TEST(Waveform, readsAWavFile) {
    std::string problem;
    const auto wave = readWav(wavBytes(), problem);
    ASSERT_TRUE(wave) << problem;
    EXPECT_EQ(wave->rate, 44100U);
    EXPECT_EQ(wave->samples, (std::vector<double>{0.5, -0.5}));
}

TEST(Waveform, refusesAWavFileWithADamagedHeader) {
    for (std::size_t i = 0; i < 44; ++i) {
        if (i >= 24 && i < 28) continue; // the rate is taken as it is, and checked by the byte rate
        std::string bytes = wavBytes();
        bytes[i] = static_cast<char>(bytes[i] ^ 0x40);
        std::string problem;
        EXPECT_FALSE(readWav(bytes, problem)) << "with byte " << i << " damaged";
        EXPECT_FALSE(problem.empty());
    }
    for (std::size_t length = 0; length < wavBytes().size(); ++length) {
        std::string problem;
        EXPECT_FALSE(readWav(wavBytes().substr(0, length), problem)) << "cut to " << length << " bytes";
    }
}

// The calibration of ITU-R BS.1770-4: a full-scale tone of 997 Hz in one channel reads -3.01.
TEST(Waveform, loudnessAgreesWithTheStandardsCalibration) {
    EXPECT_NEAR(momentaryLoudness(sine(997, 1, 2)), -3.01, 0.05);
    EXPECT_NEAR(momentaryLoudness(sine(997, 0.1, 2)), -23.01, 0.05);
}

// The standard's weighting lifts treble by 4 dB and cuts deep bass; -3.70 is its reading of an unweighted
// tone.
TEST(Waveform, loudnessIsWeightedByFrequency) {
    EXPECT_NEAR(momentaryLoudness(sine(10000, 1, 2)), -3.70 + 4.0, 0.1);
    EXPECT_NEAR(momentaryLoudness(sine(200, 1, 2)), -3.70 - 0.3, 0.2);
    EXPECT_NEAR(momentaryLoudness(sine(38.135, 1, 2)), -3.70 - 6.0, 0.3);
}

TEST(Waveform, aSoundHalfAsLongAsTheWindowIsThreeDecibelsLessLoud) {
    EXPECT_NEAR(momentaryLoudness(sine(997, 1, 0.2)), momentaryLoudness(sine(997, 1, 0.4)) - 3.01, 0.05);
}

TEST(Waveform, measuresPeakAndDcOffset) {
    Waveform wave = sine(440, 0.5, 0.5);
    EXPECT_NEAR(peak(wave), 0.5, 1e-3);
    EXPECT_NEAR(constantPart(wave), 0, 1e-6);
    for (double& sample : wave.samples) {
        sample += 0.01;
    }
    EXPECT_NEAR(constantPart(wave), 0.01, 1e-6);
    wave.samples.back() = -0.9;
    EXPECT_EQ(peak(wave), 0.9);
    EXPECT_EQ(peakBetween(wave, -0.001, wave.seconds()), 0.9);
    EXPECT_LT(peakBetween(wave, 0, 0.4), 0.52);
}

TEST(Waveform, findsClicks) {
    const Waveform clean = swell(1000, 0.5, 1);
    EXPECT_LT(clickLevel(clean), 1e-5);

    Waveform jump = clean;
    for (std::size_t i = 20000; i < jump.samples.size(); ++i) {
        jump.samples[i] += 0.02;
    }
    EXPECT_GT(clickLevel(jump), 1e-3);

    Waveform brokenOff = clean;
    brokenOff.samples.resize(30010);
    EXPECT_GT(clickLevel(brokenOff), 1e-3);

    Waveform dropped = clean;
    dropped.samples.erase(dropped.samples.begin() + 20000, dropped.samples.begin() + 20010);
    EXPECT_GT(clickLevel(dropped), 1e-3);
}

TEST(Waveform, findsTheSpectralCentroid) {
    EXPECT_NEAR(spectralCentroid(swell(1000, 0.5, 1)), 1000, 2);
    Waveform both = swell(1000, 0.5, 1);
    const Waveform high = swell(3000, 0.5, 1);
    for (std::size_t i = 0; i < both.samples.size(); ++i) {
        both.samples[i] += high.samples[i];
    }
    EXPECT_NEAR(spectralCentroid(both), 2000, 4);
}

TEST(Waveform, measuresAttackAndDecay) {
    Waveform wave = sine(2000, 0.5, 1);
    for (std::size_t i = 0; i < wave.samples.size(); ++i) {
        const double time = static_cast<double>(i) / wave.rate;
        wave.samples[i] *= std::min(time / 0.05, std::exp(-(time - 0.05) / 0.1));
    }
    EXPECT_NEAR(attackTime(wave), 0.05, 0.01);
    EXPECT_NEAR(decayTime(wave), 0.1 * std::log(10), 0.01);
}

TEST(Waveform, likenessDistinguishesSounds) {
    const Waveform tone = swell(1000, 0.5, 0.5);
    EXPECT_NEAR(likeness(tone, swell(1000, 0.1, 0.5)), 1, 1e-6);
    EXPECT_GT(likeness(tone, swell(1010, 0.5, 0.5)), 0.9);
    EXPECT_LT(likeness(tone, swell(2000, 0.5, 0.5)), 0.1);
    EXPECT_LT(likeness(tone, swell(1000, 0.5, 0.1)), 0.7);
}

TEST(Waveform, correlationFindsAPartInAWhole) {
    const Waveform part = swell(1000, 0.5, 0.1);
    Waveform whole;
    whole.rate = part.rate;
    whole.samples.assign(300, 0);
    whole.samples.insert(whole.samples.end(), part.samples.begin(), part.samples.end());
    whole.samples.resize(whole.samples.size() + 300);
    EXPECT_NEAR(correlation(whole, part, 0, 600), 1, 1e-9);
    EXPECT_NEAR(correlation(whole, swell(1500, 0.5, 0.1), 0, 600), 0, 0.01);
    EXPECT_EQ(correlation(whole, part, 601, 700), 0); // it does not fit there
}

} // namespace

} // namespace corvane::test
