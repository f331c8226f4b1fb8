#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// A program and its environment; nothing is inherited.
struct Command {
    std::vector<std::string> arguments;   ///< the program's name or path first
    std::vector<std::string> environment; ///< "NAME=value"
    std::filesystem::path folder;         ///< where it runs; empty: where the test does
    std::filesystem::path input;          ///< given on standard input; empty: nothing
    std::filesystem::path output;         ///< takes standard output and error; empty: thrown away
    int inheritedDescriptor = -1;         ///< left open in the program; -1: none
    int inputDescriptor = -1;             ///< becomes standard input in place of `input`; -1: none
    int outputDescriptor = -1;            ///< becomes standard output, without the error; -1: none
};

/// A running program in a process group of its own. It ends with this object, and also when the test is
/// killed. Not for use from several threads.
class ChildProcess {
  public:
    /// Throws std::system_error when no process can be made. A program that cannot be executed ends with
    /// status 127.
    explicit ChildProcess(const Command& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return id_; }
    [[nodiscard]] bool isRunning();

    /// The exit status, or 128 and the signal's number; none when it still runs after `timeout`.
    std::optional<int> wait(std::chrono::milliseconds timeout);

    void signal(int number) const;

    /// Asks the whole group to end, then makes it.
    void stop();

  private:
    pid_t id_;
    std::optional<int> status_;
};

} // namespace corvane::test
