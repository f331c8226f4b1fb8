#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace corvane {

/// A look at the processes that run, through the kernel's process file system. What cannot be read, such as
/// another user's process, is passed over; a process may end at any moment. Reads nothing but a few small
/// files for each.
class ProcessTable {
  public:
    /// `root`: where the process file system is mounted.
    explicit ProcessTable(std::filesystem::path root = "/proc");

    /// The processes that run the program `name` in the working directory `directory`, the youngest first. A
    /// script counts by its own name: "node /usr/bin/claude" runs "claude".
    [[nodiscard]] std::vector<pid_t> running(std::string_view name, const std::string& directory) const;

    /// `process`, its parent, and so on up to the first process of the system.
    [[nodiscard]] std::vector<pid_t> ancestry(pid_t process) const;

    /// Whether the process belongs to a terminal; agents' background services do not.
    [[nodiscard]] bool hasTerminal(pid_t process) const;

    /// When the process was started, in the kernel's ticks since the system was; none when it has ended.
    [[nodiscard]] std::optional<std::uint64_t> startTime(pid_t process) const;

    /// The value of a variable in the environment that the process was started with.
    [[nodiscard]] std::optional<std::string> variable(pid_t process, std::string_view name) const;

  private:
    [[nodiscard]] std::filesystem::path file(pid_t process, std::string_view name) const;
    [[nodiscard]] std::optional<pid_t> parent(pid_t process) const;
    /// The field of this number, from 3 on as the kernel's manual counts them, of the process's state; empty
    /// when there is no such process.
    [[nodiscard]] std::string statusField(pid_t process, std::size_t field) const;
    [[nodiscard]] bool runsProgram(pid_t process, std::string_view name) const;

    std::filesystem::path root_;
};

} // namespace corvane
