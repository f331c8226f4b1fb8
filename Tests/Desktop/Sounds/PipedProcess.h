#pragma once

#include "Desktop/Support/ChildProcess.h"

#include <chrono>
#include <optional>
#include <string>

namespace corvane::test {

/// A running program that the test communicates with: its standard input and output are pipes.
class PipedProcess {
  public:
    /// `command.output` receives standard error only. Throws std::system_error if the pipes or the process
    /// cannot be created.
    explicit PipedProcess(Command command);
    PipedProcess(const PipedProcess&) = delete;
    PipedProcess& operator=(const PipedProcess&) = delete;
    ~PipedProcess();

    /// Throws std::system_error if the program does not accept all of it.
    void write(const std::string& text);
    void closeInput();

    /// Bytes of standard output as they arrive: empty after `timeout` or at the end of the output.
    [[nodiscard]] std::string read(std::chrono::milliseconds timeout);
    /// One line, without its end.
    [[nodiscard]] std::optional<std::string> readLine(std::chrono::milliseconds timeout);

    /// Whether it has loaded a library whose path contains `name`.
    [[nodiscard]] bool hasMapped(const std::string& name) const;

    /// Like ChildProcess::wait.
    [[nodiscard]] std::optional<int> wait(std::chrono::milliseconds timeout);

  private:
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<ChildProcess> process_;
};

} // namespace corvane::test
