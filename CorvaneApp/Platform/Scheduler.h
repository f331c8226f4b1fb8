#pragma once

#include <chrono>
#include <functional>

namespace corvane {

/// Runs work later on the main thread. Main thread only.
class Scheduler {
  public:
    Scheduler() = default;
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    virtual ~Scheduler() = default;

    /// Calls `work` once, after `delay` on the monotonic clock and never before this call returns. Work that
    /// is still pending when the scheduler is destroyed is dropped.
    virtual void after(std::chrono::milliseconds delay, std::function<void()> work) = 0;
};

} // namespace corvane
