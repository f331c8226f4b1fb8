// Prints measurements of WAV files, as rows of the table in Resources/Sounds/README.md: SoundFigures
// <file>...

#include "App/Sounds/Waveform.h"
#include "Support/TestSupport.h"

#include <cstdio>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    using namespace corvane::test;

    for (int i = 1; i < argc; ++i) {
        std::string problem = "cannot be read";
        const auto bytes = fileBytes(argv[i]);
        const auto wave = bytes ? readWav(*bytes, problem) : std::nullopt;
        if (!wave) {
            std::fprintf(stderr, "SoundFigures: %s: %s\n", argv[i], problem.c_str());
            return 1;
        }
        const auto [length, centroid, attack, decay, peak] = figures(*wave);
        std::printf("| %s | ... | %.0f ms | %.0f Hz | %.0f ms | %.0f ms | %.1f dBFS |\n",
                    std::filesystem::path(argv[i]).stem().c_str(), length, centroid, attack, decay, peak);
    }
    return 0;
}
