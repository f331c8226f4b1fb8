#include "Desktop/Support/Heartbeat.h"

#include "Desktop/Support/Starvation.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <system_error>
#include <thread>

namespace corvane::test {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Server = DesktopSession::Server;

Heartbeat::Heartbeat(DesktopSession& desktop)
    : desktop_(desktop) {}

testing::AssertionResult Heartbeat::startApplication(std::vector<std::string> variables) {
    variables.emplace_back("LD_PRELOAD=" CORVANE_LOOP_WATCH_LIBRARY);
    variables.push_back("CORVANE_LOOP_WATCH=" + file_.string());
    desktop_.startApplication(variables);
    if (!waitUntil(10s, [this] { return record().waits > 1; }))
        return testing::AssertionFailure() << "there is no heartbeat";
    forgetSleep();
    return testing::AssertionSuccess();
}

void Heartbeat::forgetSleep() {
    // In place, since the file is mapped.
    std::fstream file(file_, std::ios::in | std::ios::out | std::ios::binary);
    const std::int64_t none = 0;
    file.write(reinterpret_cast<const char*>(&none), sizeof none);
    starved_ = starvation();
}

std::chrono::nanoseconds Heartbeat::longestSleep() const {
    return std::chrono::nanoseconds(std::int64_t{record().longestSleep});
}

bool Heartbeat::isInLoop() const {
    return record().isWaiting != 0;
}

testing::AssertionResult Heartbeat::isResponsive(std::chrono::milliseconds duration) const {
    const std::int64_t before = record().waits;
    const auto runs = [&] { return record().waits - before; };
    const Starvation starvationOfAll(desktop_.painters());
    std::this_thread::sleep_for(duration);
    if (!holdsWithin(duration, starvationOfAll, [&] { return runs() >= duration / 1s; }))
        return testing::AssertionFailure() << "the loop ran " << runs() << " times";
    // On a busy machine the X server, or a client that has grabbed it, waits for a processor, and the main
    // thread for the server's replies; or another thread does that holds a lock, such as the linker's.
    const auto excuse = std::clamp<std::chrono::nanoseconds>(starvation() - starved_, 0ms, 900ms);
    const std::chrono::nanoseconds sleep = longestSleep();
    if (sleep > 100ms + excuse) return testing::AssertionFailure() << "asleep for " << sleep / 1ms << " ms";
    return testing::AssertionSuccess();
}

LoopWatchRecord Heartbeat::record() const {
    LoopWatchRecord result{};
    const std::string bytes = fileBytes(file_).value_or("");
    if (bytes.size() == sizeof result) std::memcpy(&result, bytes.data(), sizeof result);
    return result;
}

/// How long the X server, the clients that grab it and the application's other threads have waited for a
/// processor in all.
std::chrono::nanoseconds Heartbeat::starvation() const {
    std::chrono::nanoseconds sum{0};
    const auto add = [&sum](const fs::path& folder) { sum += waitedToRun(folder).value_or(0ns); };
    for (const ChildProcess* const process :
         {&desktop_.server(Server::x), &desktop_.server(Server::windowManager), &desktop_.compositor()}) {
        add(fs::path("/proc") / std::to_string(process->id()));
    }
    const std::string main = std::to_string(desktop_.application().id());
    std::error_code ended;
    for (const auto& thread : fs::directory_iterator(fs::path("/proc") / main / "task", ended)) {
        if (thread.path().filename() != main) add(thread.path());
    }
    return sum;
}

} // namespace corvane::test
