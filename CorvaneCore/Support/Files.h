#pragma once

#include "Support/Date.h"
#include "Support/FileError.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// Reads and writes whole files; never leaves one half written.
///
/// Errors are thrown as `FileError`. Names are passed to the system unchanged; symbolic links are followed
/// unless stated otherwise. Stateless; call from any thread, but not for the same file at the same time.
namespace corvane::files {

/// What was at a path at one moment. Two equal states mean the same bytes, except for a change in place that
/// kept size and modification time (file systems' timestamps have a resolution of milliseconds, at worst
/// seconds).
struct FileState {
    enum class Kind : std::uint8_t { absent, plain, folder, other };

    Kind kind = Kind::absent;
    std::uint64_t device = 0;
    std::uint64_t number = 0; ///< The file's inode.
    std::int64_t size = 0;    ///< Bytes.
    Date modified;

    bool operator==(const FileState&) const = default;
};

struct FileContent {
    std::string bytes;
    FileState state;
};

/// Never opens the file. A dangling link is absent.
[[nodiscard]] FileState state(const std::filesystem::path& path);

/// Reads a whole regular file; anything else (a named pipe, a device) is an error and never blocks. The state
/// is that of the bytes returned: a file that changes while it is read is read again a few times, then that
/// is an error.
[[nodiscard]] FileContent read(const std::filesystem::path& path);

/// Creates a folder with all missing parents; an existing one is left alone.
void createDirectories(const std::filesystem::path& folder);

/// Follows links in the last component of `path`, also to a target that does not exist yet. A loop is an
/// error.
[[nodiscard]] std::filesystem::path resolvingLinks(std::filesystem::path path);

/// Replaces the content of the file at `path` by `bytes`. At every moment, even after a crash or a power
/// failure, the file holds either all of its old or all of the new bytes. Missing parents are created. A link
/// stays, its target gets the bytes. A temporary file beside the target, readable by nobody else, is written,
/// flushed to the disk and renamed; it is removed after every error (only a killed process can leave one: a
/// name that begins with ".corvane-").
///
/// An old file's permissions are kept, its owner, group, access-control list and extended attributes where
/// the system allows; if the group or the list cannot be kept, no group gets more rights than others have. A
/// new file follows the creation mask. Hard links to the old file keep the old bytes.
void writeAtomically(const std::filesystem::path& path, std::string_view bytes);

/// The permissions of a file that replaces another.
enum class Permissions : std::uint8_t {
    keep,  ///< The old file's.
    fresh, ///< A new file's, whatever was there before.
};

/// The same, but only if `path` is still in the state `expected` just before the rename; otherwise returns
/// false and changes nothing. A change in the few microseconds between that check and the rename goes
/// unnoticed.
[[nodiscard]] bool replaceIfUnchanged(const std::filesystem::path& path, std::string_view bytes,
                                      const FileState& expected, Permissions permissions = Permissions::keep);

/// Writes `bytes`, the content of `original`, to `backup`. Never replaces anything: fails if `backup` exists.
/// From its first byte the backup is readable by nobody who could not read `original`; in the end it has the
/// original's permissions. Flushed to the disk; removed after an error (but not if the process is killed).
void writeBackup(const std::filesystem::path& backup, std::string_view bytes,
                 const std::filesystem::path& original);

/// Keeps the file at `original` itself under the additional name `backup` (a hard link to the file that
/// symbolic links lead to), which needs no permission to read it. Never replaces anything.
void linkBackup(const std::filesystem::path& backup, const std::filesystem::path& original);

/// Whether anything exists at `path`, even a dangling link.
[[nodiscard]] bool nameIsTaken(const std::filesystem::path& path);

} // namespace corvane::files
