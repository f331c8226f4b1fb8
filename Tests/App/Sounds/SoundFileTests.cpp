// Nobody listens during a test run, so the sounds are judged by measurements.

#include "App/Sounds/Waveform.h"
#include "Sessions/AlertPreferences.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

std::filesystem::path soundFolder() {
    return CORVANE_SOUND_FOLDER;
}

class SoundFile : public testing::TestWithParam<std::string_view> {
  protected:
    void SetUp() override {
        const auto bytes = fileBytes(soundFolder() / (std::string(GetParam()) + ".wav"));
        ASSERT_TRUE(bytes);
        std::string problem;
        const auto read = readWav(*bytes, problem);
        ASSERT_TRUE(read) << problem;
        wave = *read;
    }

    Waveform wave;
};

Waveform sound(std::string_view name) {
    std::string problem = "cannot be read";
    const auto bytes = fileBytes(soundFolder() / (std::string(name) + ".wav"));
    const auto wave = bytes ? readWav(*bytes, problem) : std::nullopt;
    EXPECT_TRUE(wave) << name << ": " << problem;
    return wave.value_or(Waveform{44100, {1}});
}

TEST_P(SoundFile, hasTheCommonSampleRate) {
    EXPECT_EQ(wave.rate, 44100U);
}

TEST_P(SoundFile, isShort) {
    EXPECT_GE(wave.seconds(), 0.1);
    EXPECT_LE(wave.seconds(), 1.2);
}

TEST_P(SoundFile, isAsLoudAsTheOthers) {
    EXPECT_NEAR(momentaryLoudness(wave), -20, 0.2);
}

TEST_P(SoundFile, leavesHeadroomForASecondSound) {
    EXPECT_LE(peak(wave), 0.451);
    EXPECT_GE(peak(wave), 0.2);
}

TEST_P(SoundFile, isSilentAtBothEnds) {
    EXPECT_EQ(peakBetween(wave, 0, 0.0019), 0);
    EXPECT_EQ(peakBetween(wave, -0.0099, wave.seconds()), 0);
    // Not cut off either: the end is 60 dB below full scale.
    EXPECT_LE(peakBetween(wave, -0.02, wave.seconds()), 0.001);
}

TEST_P(SoundFile, hasNoClicks) {
    EXPECT_LE(clickLevel(wave), 2e-4);
}

TEST_P(SoundFile, hasNoDcOffset) {
    EXPECT_NEAR(constantPart(wave), 0, 1e-5);
}

TEST_P(SoundFile, beginsAtOnce) {
    // The sound begins without a noticeable delay after the banner.
    EXPECT_GE(peakBetween(wave, 0, 0.06), 0.1 * peak(wave));
}

TEST_P(SoundFile, hasFadedByTwentyDecibelsWhenTheNextMayStart) {
    EXPECT_LE(attackTime(wave) + decayTime(wave), 0.9);
}

TEST_P(SoundFile, reachesSmallLoudspeakers) {
    EXPECT_GE(spectralCentroid(wave), 280);
    EXPECT_LE(spectralCentroid(wave), 6000);
}

INSTANTIATE_TEST_SUITE_P(All, SoundFile, testing::ValuesIn(AlertPreferences::soundChoices),
                         [](const auto& instance) { return std::string(instance.param); });

TEST(SoundFiles, areThoseThatCanBeChosenAndNoOthers) {
    std::set<std::string> expected;
    for (const std::string_view name : AlertPreferences::soundChoices) {
        expected.insert(std::string(name) + ".wav");
    }
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(soundFolder())) {
        found.insert(entry.path().filename().string());
    }
    EXPECT_EQ(found, expected);
}

TEST(SoundFiles, areDistinguishable) {
    for (const std::string_view left : AlertPreferences::soundChoices) {
        for (const std::string_view right : AlertPreferences::soundChoices) {
            if (left >= right) continue;
            EXPECT_LT(likeness(sound(left), sound(right)), 0.75) << left << " and " << right;
        }
    }
}

TEST(SoundFiles, haveTheFiguresOfTheTable) {
    std::istringstream page(fileBytes(CORVANE_SOUND_TABLE).value_or(""));
    std::map<std::string, std::array<double, 5>, std::less<>> table;
    for (std::string line; std::getline(page, line);) {
        // A name, a description, and five numbers with their units.
        std::vector<std::string> cells;
        std::istringstream row(line);
        for (std::string cell; std::getline(row, cell, '|');)
            cells.push_back(cell);
        if (cells.size() != 8 || cells[3].find_first_of("0123456789") == std::string::npos) continue;
        std::string name;
        std::istringstream(cells[1]) >> name;
        for (std::size_t i = 0; i < 5; ++i)
            std::istringstream(cells[i + 3]) >> table[name].at(i);
    }
    // Rounded, and measured in steps of 2 ms, which the mathematics of another system may just miss.
    constexpr std::array<double, 5> tolerances{1, 2, 2.5, 2.5, 0.1};
    for (const std::string_view name : AlertPreferences::soundChoices) {
        const auto found = table.find(name);
        ASSERT_NE(found, table.end()) << name << " has no row";
        const std::array<double, 5> measured = figures(sound(name));
        for (std::size_t i = 0; i < 5; ++i)
            EXPECT_NEAR(found->second.at(i), measured.at(i), tolerances.at(i)) << name << ", figure " << i;
    }
    EXPECT_EQ(table.size(), AlertPreferences::soundChoices.size());
}

TEST(SoundFiles, anyTwoAtOnceDoNotClip) {
    for (const std::string_view left : AlertPreferences::soundChoices) {
        for (const std::string_view right : AlertPreferences::soundChoices) {
            if (left == right) continue;
            EXPECT_LT(peak(sound(left)) + peak(sound(right)), 0.95) << left << " and " << right;
        }
    }
}

TEST(SoundFiles, areReproducible) {
    const ScratchFolder scratch;
    ASSERT_EQ(
        std::system((std::string(CORVANE_SOUND_RECIPE) + " '" + (scratch / "new").string() + "'").c_str()),
        0);
    for (const std::string_view name : AlertPreferences::soundChoices) {
        const std::string file = std::string(name) + ".wav";
        EXPECT_EQ(fileBytes(scratch.path() / "new" / file), fileBytes(soundFolder() / file)) << name;
    }
}

TEST(SoundFiles, theRecipeReportsThatItCannotWrite) {
    const ScratchFolder scratch;
    writeFile(scratch / "file", "");
    const std::string command = std::string(CORVANE_SOUND_RECIPE) + " '" + (scratch / "file").string() +
                                "' 2> '" + (scratch / "errors").string() + "'";
    EXPECT_NE(std::system(command.c_str()), 0);
    EXPECT_NE(fileBytes(scratch / "errors")->find("cannot write"), std::string::npos);
}

} // namespace

} // namespace corvane::test
