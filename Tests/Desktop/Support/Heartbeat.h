#pragma once

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/LoopWatch.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace corvane::test {

/// The heartbeat of the application's main thread, which the library LoopWatch measures inside it.
class Heartbeat {
  public:
    /// `desktop` must outlive it.
    explicit Heartbeat(DesktopSession& desktop);

    /// Starts the application with it and with further "NAME=value", and waits for the first beat. How long
    /// the thread sleeps before that does not count: the start may wait for replies.
    testing::AssertionResult startApplication(std::vector<std::string> variables = {});

    /// Disregards everything before this call.
    void forgetSleep();

    /// The longest time that the thread has slept outside of its loop.
    [[nodiscard]] std::chrono::nanoseconds longestSleep() const;

    /// Whether the thread waits for the next event at this moment.
    [[nodiscard]] bool isInLoop() const;

    /// Whether the thread goes through its loop for `duration`, and has not slept outside of it for longer
    /// than a tenth of a second.
    [[nodiscard]] testing::AssertionResult
    isResponsive(std::chrono::milliseconds duration = std::chrono::milliseconds(2500)) const;

  private:
    [[nodiscard]] LoopWatchRecord record() const;
    [[nodiscard]] std::chrono::nanoseconds starvation() const;

    DesktopSession& desktop_;
    ScratchFolder scratch_{"heartbeat"};
    std::filesystem::path file_ = scratch_ / "heartbeat";
    std::chrono::nanoseconds starved_{0}; // when the heartbeat began
};

} // namespace corvane::test
