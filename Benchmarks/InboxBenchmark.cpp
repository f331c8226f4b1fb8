// Draining the inbox compared with a plain loop that lists, stats, sorts, reads and unlinks the same files.

#include "Intake/EventInbox.h"
#include "SamplePayload.h"
#include "Support/FileTime.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t fileCount = corvane::EventInbox::maxBacklog;

/// A folder that is refilled before each drain and removed at the end.
class Inbox {
  public:
    explicit Inbox(std::size_t fileSize)
        : text_("corvane-event 1\nsource=claude\nterm=Apple_Terminal\nbundle=com.apple.Terminal\n---\n" +
                corvane::benchmarks::samplePayload(fileSize)) {
        std::string pattern = (fs::temp_directory_path() / "corvane-benchmark-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        folder_ = pattern;
    }
    Inbox(const Inbox&) = delete;
    Inbox& operator=(const Inbox&) = delete;
    ~Inbox() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    void fill() const {
        for (std::size_t i = 0; i < fileCount; ++i) {
            std::ofstream(folder_ / (std::to_string(1'700'000'000 + i) + "-4711.event"), std::ios::binary)
                << text_;
        }
    }

    [[nodiscard]] const fs::path& folder() const { return folder_; }
    [[nodiscard]] std::size_t bytes() const { return fileCount * text_.size(); }

  private:
    std::string text_;
    fs::path folder_;
};

/// The work that is unavoidable when all files are read in order, into one buffer.
std::size_t plainLoop(const fs::path& folder) {
    struct Entry {
        corvane::Date date;
        std::string name;
        std::size_t size = 0;
    };
    std::vector<Entry> entries;
    DIR* const directory = opendir(folder.c_str());
    if (directory == nullptr) std::abort();
    while (const dirent* const found = readdir(directory)) {
        if (found->d_name[0] == '.') continue;
        struct stat status {};
        if (fstatat(dirfd(directory), found->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) std::abort();
        entries.push_back(
            {corvane::modificationDate(status), found->d_name, static_cast<std::size_t>(status.st_size)});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.date, a.name) < std::tie(b.date, b.name);
    });
    std::vector<char> buffer;
    std::size_t total = 0;
    for (const Entry& entry : entries) {
        if (buffer.size() < entry.size) buffer.resize(entry.size);
        const int file = openat(dirfd(directory), entry.name.c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t count = read(file, buffer.data(), entry.size);
        close(file);
        if (count < 0) std::abort();
        total += static_cast<std::size_t>(count);
        unlinkat(dirfd(directory), entry.name.c_str(), 0);
    }
    closedir(directory);
    return total;
}

void drainInbox(benchmark::State& state) {
    const Inbox inbox(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        inbox.fill();
        state.ResumeTiming();
        const auto events = corvane::EventInbox{inbox.folder()}.drain();
        if (events.size() != fileCount) state.SkipWithError("events are missing");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(inbox.bytes()));
}

void plainLoopOverInbox(benchmark::State& state) {
    const Inbox inbox(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        inbox.fill();
        state.ResumeTiming();
        if (plainLoop(inbox.folder()) != inbox.bytes()) state.SkipWithError("bytes are missing");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(inbox.bytes()));
}

/// The drain that the application makes every second, nearly always of an empty inbox.
void drainEmptyInbox(benchmark::State& state) {
    const Inbox inbox(0);
    for (auto _ : state) {
        const auto events = corvane::EventInbox{inbox.folder()}.drain();
        if (!events.empty()) state.SkipWithError("unexpected events");
    }
}

BENCHMARK(plainLoopOverInbox)->Arg(4 << 10)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(drainInbox)->Arg(4 << 10)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(drainEmptyInbox)->Unit(benchmark::kMicrosecond);

} // namespace
