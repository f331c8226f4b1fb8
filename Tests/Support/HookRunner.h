#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace corvane::test {

/// A program to start as agents start their hooks: without a terminal, with its own environment.
struct Launch {
    std::vector<std::string> arguments; ///< the program's path first
    std::string input;                  ///< given on standard input
    std::vector<std::pair<std::string, std::string>> environment;
};

struct Outcome {
    int status = -1; ///< the exit status; -1 when a signal ended the program
    std::string output;
    std::string errors;

    bool operator==(const Outcome&) const = default;
};

/// Starts programs and waits for them; leaves none running.
class HookRunner {
  public:
    /// Scratch files are kept in `folder`, which must exist.
    explicit HookRunner(std::filesystem::path folder)
        : folder_(std::move(folder)) {}
    HookRunner(const HookRunner&) = delete;
    HookRunner& operator=(const HookRunner&) = delete;
    ~HookRunner();

    /// Starts a program without waiting for it.
    void start(const Launch& launch);

    /// Waits for all programs, in the order in which they were started.
    std::vector<Outcome> finish();

    Outcome run(const Launch& launch);

  private:
    struct Running {
        pid_t process;
        std::filesystem::path output;
        std::filesystem::path errors;
    };
    std::filesystem::path folder_;
    std::size_t started_ = 0;
    std::vector<Running> running_;
};

} // namespace corvane::test
