#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace corvane {

/// The running processes, as the kernel's proc file system lists them. What cannot be read, such as another
/// user's process, is skipped; a process may end at any moment. Reads only a few small files per process.
class ProcessTable {
  public:
    /// `root`: where the proc file system is mounted.
    explicit ProcessTable(std::filesystem::path root = "/proc");

    /// The processes that run the program `name` in the working directory `directory`, the youngest first. A
    /// script counts under its own name: "node /usr/bin/claude" runs "claude".
    [[nodiscard]] std::vector<pid_t> running(std::string_view name, const std::string& directory) const;

    /// `process`, its parent, and so on up to the first process of the system.
    [[nodiscard]] std::vector<pid_t> ancestry(pid_t process) const;

    /// Whether the process has a controlling terminal; agents' background services do not.
    [[nodiscard]] bool hasTerminal(pid_t process) const;

    /// When the process was started, in the kernel's clock ticks since boot; none when it has ended.
    [[nodiscard]] std::optional<std::uint64_t> startTime(pid_t process) const;

    /// Whether the process that was started at `started` has certainly ended; false if that cannot be
    /// determined.
    [[nodiscard]] bool hasEnded(pid_t process, std::uint64_t started) const;

    /// The value of a variable in the environment that the process was started with.
    [[nodiscard]] std::optional<std::string> variable(pid_t process, std::string_view name) const;

  private:
    [[nodiscard]] std::filesystem::path file(pid_t process, std::string_view name) const;
    [[nodiscard]] std::optional<pid_t> parent(pid_t process) const;
    /// The field with this number (3 or higher, see proc(5)) of the process's status; empty when there is no
    /// such process.
    [[nodiscard]] std::string statusField(pid_t process, std::size_t field) const;
    [[nodiscard]] bool runsProgram(pid_t process, std::string_view name) const;

    std::filesystem::path root_;
};

} // namespace corvane
