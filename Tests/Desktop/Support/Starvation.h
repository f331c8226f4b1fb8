#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// How long the process or thread with this folder in /proc has been ready to run without running, not
/// including its other threads; none if there is no such folder.
[[nodiscard]] std::optional<std::chrono::nanoseconds> waitedToRun(const std::filesystem::path& folder);

/// How long programs have waited for a processor, or the machine itself for its host: the delay that is due
/// to a busy machine. Measured by the kernel; time spent computing or sleeping does not count.
class Starvation {
  public:
    /// Watches the main threads of these processes, and the calling thread. One that ends counts until its
    /// end.
    explicit Starvation(const std::vector<pid_t>& processes);

    /// The sum over all of them since this object was created.
    [[nodiscard]] std::chrono::nanoseconds soFar();
    /// The time that has passed since then, minus that sum.
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

/// Polls `condition` until it holds or `limit` has passed since `starvation` was created, not counting the
/// starvation; returns whether it held. For what must be prompt; use `waitUntil` for what must merely happen.
bool holdsWithin(std::chrono::milliseconds limit, Starvation starvation,
                 const std::function<bool()>& condition);

} // namespace corvane::test
