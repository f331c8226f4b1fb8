#include "Desktop/Support/Starvation.h"

#include "Support/TestSupport.h"

#include <cstdint>
#include <sstream>
#include <thread>
#include <unistd.h>
#include <utility>

namespace corvane::test {

namespace fs = std::filesystem;

namespace {

using std::chrono::nanoseconds;

/// What the host of a virtual machine has given to others meanwhile.
nanoseconds takenByHost() {
    constexpr int fieldsBefore = 7;
    std::istringstream fields(fileBytes("/proc/stat").value_or(""));
    std::string name;
    fields >> name;
    std::int64_t ticks = 0;
    for (int i = 0; i <= fieldsBefore; ++i)
        fields >> ticks;
    return fields ? nanoseconds(std::chrono::seconds(ticks)) / sysconf(_SC_CLK_TCK) : nanoseconds(0);
}

} // namespace

std::optional<nanoseconds> waitedToRun(const fs::path& folder) {
    std::istringstream times(fileBytes(folder / "schedstat").value_or(""));
    std::int64_t running = 0;
    std::int64_t waiting = 0;
    if (times >> running >> waiting) return nanoseconds(waiting);
    return std::nullopt;
}

Starvation::Starvation(const std::vector<pid_t>& processes)
    : takenByHostAtFirst_(takenByHost()) {
    std::vector<fs::path> folders{"/proc/self/task/" + std::to_string(gettid())};
    for (const pid_t process : processes)
        folders.emplace_back("/proc/" + std::to_string(process));
    for (fs::path& folder : folders) {
        if (const auto now = waitedToRun(folder)) watched_.push_back({std::move(folder), *now, *now});
    }
}

nanoseconds Starvation::soFar() {
    nanoseconds sum = takenByHost() - takenByHostAtFirst_;
    for (Watched& each : watched_) {
        each.atLast = waitedToRun(each.folder).value_or(each.atLast);
        sum += each.atLast - each.atFirst;
    }
    return sum;
}

nanoseconds Starvation::unstarved() {
    // Before the clock is read, so that starvation in between counts as elapsed time.
    const nanoseconds starved = soFar();
    return std::chrono::steady_clock::now() - start_ - starved;
}

bool holdsWithin(std::chrono::milliseconds limit, Starvation starvation,
                 const std::function<bool()>& condition) {
    constexpr std::chrono::milliseconds pause{10};
    // Programs that wait at the same time count separately: on a machine that is always busy, the remaining
    // time may never pass.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1) + limit;
    for (;;) {
        const bool isLastLook =
            starvation.unstarved() >= limit || std::chrono::steady_clock::now() >= deadline;
        if (condition()) return true;
        if (isLastLook) return false;
        std::this_thread::sleep_for(pause);
    }
}

} // namespace corvane::test
