// Prints measurements of WAV files, for those who change the sounds: SoundFigures <file>...

#include "App/Sounds/Waveform.h"
#include "Support/TestSupport.h"

#include <cstdio>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    using namespace corvane::test;

    std::puts(
        "| sound | length ms | loudness LUFS | peak dBFS | centroid Hz | attack ms | decay to -20 dB ms |");
    std::puts("| --- | --- | --- | --- | --- | --- | --- |");
    for (int i = 1; i < argc; ++i) {
        std::string problem = "cannot be read";
        const auto bytes = fileBytes(argv[i]);
        const auto wave = bytes ? readWav(*bytes, problem) : std::nullopt;
        if (!wave) {
            std::fprintf(stderr, "SoundFigures: %s: %s\n", argv[i], problem.c_str());
            return 1;
        }
        std::printf("| %s | %.0f | %.2f | %.1f | %.0f | %.0f | %.0f |\n",
                    std::filesystem::path(argv[i]).stem().c_str(), wave->seconds() * 1000,
                    momentaryLoudness(*wave), decibels(peak(*wave)), spectralCentroid(*wave),
                    attackTime(*wave) * 1000, decayTime(*wave) * 1000);
    }
    return 0;
}
