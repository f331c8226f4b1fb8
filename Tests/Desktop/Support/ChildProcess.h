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
    std::filesystem::path folder;         ///< its working directory; empty: the test's
    std::filesystem::path input;          ///< standard input; empty: nothing
    std::filesystem::path output;         ///< receives standard output and error; empty: discarded
    int inheritedDescriptor = -1;         ///< left open in the program; -1: none
    int inputDescriptor = -1;             ///< becomes standard input in place of `input`; -1: none
    int outputDescriptor = -1;            ///< becomes standard output, without the error; -1: none
};

/// A running program in its own process group. It is ended with this object, and also when the test is
/// killed. Not thread-safe.
class ChildProcess {
  public:
    /// Throws std::system_error if no process can be created. A program that cannot be executed exits with
    /// status 127.
    explicit ChildProcess(const Command& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return id_; }
    [[nodiscard]] bool isRunning();

    /// The exit status, or 128 plus the signal number; none if it is still running after `timeout`.
    std::optional<int> wait(std::chrono::milliseconds timeout);

    void signal(int number) const;
    /// Sends the signal to the whole group.
    void signalGroup(int number) const;

    /// Asks the whole group to end, then kills it.
    void stop();

  private:
    pid_t id_;
    std::optional<int> status_;
};

} // namespace corvane::test
