#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// For how long the process or thread whose folder in /proc this is has been ready to run without running,
/// its other threads not included; none if there is no such folder.
[[nodiscard]] std::optional<std::chrono::nanoseconds> waitedToRun(const std::filesystem::path& folder);

/// For how long programs have waited for a processor, or the machine itself has for its host: on a busy
/// machine they do by so much later what they would do in time. Measured by the kernel; time that they
/// compute or sleep does not count.
class Starvation {
  public:
    /// Of the main threads of these processes, and of the calling thread. Those that end later count up to
    /// then.
    explicit Starvation(const std::vector<pid_t>& processes);

    /// Of all of them together, since this object was created.
    [[nodiscard]] std::chrono::nanoseconds soFar();
    /// The time that has passed since then without it.
    [[nodiscard]] std::chrono::nanoseconds unstarved();

  private:
    struct Watched {
        std::filesystem::path folder;
        std::chrono::nanoseconds atFirst;
        std::chrono::nanoseconds atLast;
    };
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::vector<Watched> watched_;
    std::chrono::nanoseconds takenByHostAtFirst_;
};

/// Polls `condition` until it holds or `limit` has passed since `starvation` was created, not counting that
/// itself; returns whether it held. For what must be prompt; what must only happen is awaited by `waitUntil`.
bool holdsWithin(std::chrono::milliseconds limit, Starvation starvation,
                 const std::function<bool()>& condition);

} // namespace corvane::test
