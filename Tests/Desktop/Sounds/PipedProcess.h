#pragma once

#include "Desktop/Support/ChildProcess.h"

#include <chrono>
#include <optional>
#include <string>

namespace corvane::test {

/// A running program that the test talks with: its standard input and output are pipes.
class PipedProcess {
  public:
    /// `command.output` takes the standard error only. Throws std::system_error when no pipe and no process
    /// can be made.
    explicit PipedProcess(Command command);
    PipedProcess(const PipedProcess&) = delete;
    PipedProcess& operator=(const PipedProcess&) = delete;
    ~PipedProcess();

    /// Throws std::system_error when the program does not take all of it.
    void write(const std::string& text);
    void closeInput();

    /// Bytes of the standard output as they come: nothing when `timeout` has passed or the output ended.
    [[nodiscard]] std::string read(std::chrono::milliseconds timeout);
    /// One line, without its end.
    [[nodiscard]] std::optional<std::string> readLine(std::chrono::milliseconds timeout);

    /// Whether it has loaded a library whose path contains `name`.
    [[nodiscard]] bool hasMapped(const std::string& name) const;

    /// As ChildProcess has it.
    [[nodiscard]] std::optional<int> wait(std::chrono::milliseconds timeout);

  private:
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<ChildProcess> process_;
};

} // namespace corvane::test
