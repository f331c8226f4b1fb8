#include "Desktop/Support/UsedFiles.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <unistd.h>

namespace corvane::test {

namespace fs = std::filesystem;

void recordUsedFiles(const std::vector<pid_t>& processes) {
    const char* const folder = std::getenv("CORVANE_USED_FILES");
    if (folder == nullptr) return;
    static std::set<std::string> known;
    // Test programs run in parallel: each has its own file.
    std::ofstream record(fs::path(folder) / std::to_string(getpid()), std::ios::app);
    for (const pid_t process : processes) {
        const fs::path entry = fs::path("/proc") / std::to_string(process);
        std::error_code error;
        const std::string program = fs::read_symlink(entry / "exe", error).string();
        std::ifstream maps(entry / "maps");
        for (std::string line; std::getline(maps, line);) {
            // The path comes last, and no field before it has a slash.
            const std::size_t start = line.find('/');
            if (start == std::string::npos) continue;
            const std::string use = program + "\t" + line.substr(start);
            if (known.insert(use).second) record << use << "\n";
        }
    }
}

} // namespace corvane::test
