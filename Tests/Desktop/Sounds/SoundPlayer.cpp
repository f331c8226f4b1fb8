// Plays sounds as the application does: SoundPlayer <folder of the sounds>
// Each line of standard input names sounds to play in one pass. The reply is a line with the microseconds of
// the slowest call of play(), without those for which this thread waited for a processor, and the number of
// threads afterwards. The end of the input ends the program.

#include "Platform/Linux/Sounds.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

namespace {

std::chrono::nanoseconds waitedForProcessor() {
    std::ifstream times("/proc/thread-self/schedstat");
    std::int64_t running = 0;
    std::int64_t waiting = 0;
    times >> running >> waiting;
    return std::chrono::nanoseconds(waiting);
}

} // namespace

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    if (argc != 2) {
        std::cerr << "usage: SoundPlayer <folder>\n";
        return 2;
    }
    corvane::LinuxSounds sounds(argv[1]);
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream names(line);
        std::chrono::microseconds slowest{0};
        std::string name;
        while (names >> name) {
            const std::chrono::nanoseconds waited = waitedForProcessor();
            const Clock::time_point before = Clock::now();
            sounds.play(name);
            const std::chrono::nanoseconds took = Clock::now() - before - (waitedForProcessor() - waited);
            slowest = std::max(slowest, std::chrono::duration_cast<std::chrono::microseconds>(took));
        }
        const std::filesystem::directory_iterator threads("/proc/self/task");
        std::cout << slowest.count() << ' ' << std::distance(begin(threads), end(threads)) << std::endl;
    }
    return 0;
}
