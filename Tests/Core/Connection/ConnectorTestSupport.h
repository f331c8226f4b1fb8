#pragma once

#include "Support/Date.h"
#include "Support/TestSupport.h"
#include "Support/TimeZone.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// 14:03:07 on 2 March 2025 in the time zone that the tests run in, UTC.
inline constexpr Date noon(1'740'924'187, 0);

/// Sets the process's file creation mask for a test.
class CreationMask {
  public:
    explicit CreationMask(mode_t mask);
    CreationMask(const CreationMask&) = delete;
    CreationMask& operator=(const CreationMask&) = delete;
    ~CreationMask();

  private:
    mode_t before_;
};

/// A user's home for the duration of a test, in UTC.
class ScratchHome {
  public:
    ScratchHome();
    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
    /// The folder that the test owns.
    [[nodiscard]] std::filesystem::path root() const { return folder_.path().parent_path(); }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return folder_ / name; }

  private:
    ScratchFolder folder_{"home"};
    TimeZone zone_{"UTC0"};
};

/// A scratch folder in a memory file system if there is one.
[[nodiscard]] ScratchFolder inMemory();

/// The names in a folder, sorted; empty when it cannot be listed.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);
/// Those of them that are backups.
[[nodiscard]] std::vector<std::string> backupsIn(const std::filesystem::path& folder);

[[nodiscard]] mode_t modeOf(const std::filesystem::path& path);

/// How many files this process has open.
[[nodiscard]] std::size_t openDescriptors();

/// Runs `body` in an unprivileged child process that owns everything below `folder`. `prepare` runs after the
/// change of ownership. What fails in the child fails the test.
void asOrdinaryUser(
    const std::filesystem::path& folder, const std::function<void()>& body,
    const std::function<void()>& prepare = [] {});

/// Runs `body` in a child process; what fails there fails the test. A child can also skip the test.
enum class ChildResult { passed, failed, skipped };
ChildResult inChild(const std::function<ChildResult()>& body);

} // namespace corvane::test
