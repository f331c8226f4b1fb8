// Writes the named sounds as WAV files (one channel, 16 bits, 44.1 kHz) into a folder: SoundRecipe <folder>

#include "Loudness.h"
#include "Recipes.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using namespace corvane::sounds;

void appendNumber(std::string& bytes, std::uint32_t number, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<char>((number >> (8 * i)) & 0xFF));
    }
}

std::string wav(const Signal& signal) {
    constexpr auto rate = static_cast<std::uint32_t>(sampleRate);
    constexpr std::uint32_t bytesASample = 2;
    const auto size = static_cast<std::uint32_t>(signal.size()) * bytesASample;

    std::string bytes = "RIFF";
    appendNumber(bytes, 36 + size, 4);
    bytes += "WAVEfmt ";
    appendNumber(bytes, 16, 4);
    appendNumber(bytes, 1, 2); // PCM
    appendNumber(bytes, 1, 2); // channels
    appendNumber(bytes, rate, 4);
    appendNumber(bytes, rate * bytesASample, 4);
    appendNumber(bytes, bytesASample, 2);
    appendNumber(bytes, 8 * bytesASample, 2);
    bytes += "data";
    appendNumber(bytes, size, 4);
    for (const double sample : signal) {
        const auto value = static_cast<std::int32_t>(std::lround(sample * 32767));
        appendNumber(bytes, static_cast<std::uint32_t>(value), 2);
    }
    return bytes;
}

bool write(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return !file.fail();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: SoundRecipe <folder>\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code ignored; // if the folder cannot be created, writing the first file fails
    std::filesystem::create_directories(folder, ignored);

    for (const Recipe& recipe : recipes()) {
        const Signal signal = make(recipe);
        if (peak(signal) > highestPeak) {
            std::fprintf(stderr, "SoundRecipe: %.*s has a peak of %.3f, above %.3f: lengthen its decay\n",
                         static_cast<int>(recipe.name.size()), recipe.name.data(), peak(signal), highestPeak);
            return 1;
        }
        const std::filesystem::path path = folder / (std::string(recipe.name) + ".wav");
        if (!write(path, wav(signal))) {
            std::fprintf(stderr, "SoundRecipe: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
