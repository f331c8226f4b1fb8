#pragma once

#include <filesystem>
#include <sys/types.h>

/// The few file operations that differ between systems. Nothing throws; failures set errno as the system
/// does.
namespace corvane::files::platform {

/// Flushes the open file `descriptor` from the system's caches to the disk. Returns false on failure.
[[nodiscard]] bool flushToDisk(int descriptor);

/// The process's file creation mask (umask). Must not race with a change of the mask.
[[nodiscard]] mode_t creationMask();

/// Gives the open file `descriptor` the access-control list and the extended attributes of the file `from`,
/// as far as both file systems and the user's rights allow. Returns false when `from` has an access-control
/// list that could not be copied, so that its mode alone would grant more than it does.
[[nodiscard]] bool copyAttributes(const std::filesystem::path& from, int descriptor);

/// Renames; fails with EEXIST if something exists at `to`.
[[nodiscard]] bool renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace corvane::files::platform
