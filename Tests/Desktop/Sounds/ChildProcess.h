#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// Variables of an environment.
using Environment = std::map<std::string, std::string>;

/// A program that a test runs. Its standard input and output are pipes; its errors go into a file. Killed at
/// the latest when this goes.
class ChildProcess {
  public:
    /// Searches the PATH for the first of `arguments`. The test program's environment is not handed on, but
    /// for what `environment` names, the PATH and the options of the sanitizers.
    ChildProcess(const std::vector<std::string>& arguments, const Environment& environment,
                 const std::filesystem::path& errors);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return id_; }

    void write(const std::string& text);
    void closeInput();

    /// Bytes of the standard output as they come: nothing when `patience` is over or the output ended.
    [[nodiscard]] std::string read(std::chrono::milliseconds patience);

    /// One line, without its end.
    [[nodiscard]] std::optional<std::string> readLine(std::chrono::milliseconds patience);

    void signal(int number) const;

    /// Status as a shell gives it (128 and the number for a signal), or nothing when it has not ended in
    /// time.
    [[nodiscard]] std::optional<int> waitForEnd(std::chrono::milliseconds patience);

  private:
    pid_t id_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
    std::optional<int> status_;
};

} // namespace corvane::test
