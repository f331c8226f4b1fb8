#pragma once

#include "Support/Date.h"
#include "Support/FileError.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// Whole files in, whole files out, without ever leaving one half written.
///
/// Errors are thrown as `FileError`. Names are handed to the system as they are; links are followed unless
/// said otherwise. Nothing here keeps state; call from any thread, but not for the same file at the same
/// time.
namespace corvane::files {

/// What stood at a path at one moment. Two equal states mean the same bytes, except for a change in place
/// that kept size and modification time (file systems stamp with a resolution of a few milliseconds at worst
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

/// Reads a plain file whole; anything else is an error and is never waited for (a named pipe, a device). The
/// state is that of the bytes returned: a file that changes while it is read is read again a few times, then
/// an error.
[[nodiscard]] FileContent read(const std::filesystem::path& path);

/// Makes a folder with all missing parents; one that exists already is left alone.
void createDirectories(const std::filesystem::path& folder);

/// Follows links in the last component of `path`, also to a target that does not exist yet. A loop is an
/// error.
[[nodiscard]] std::filesystem::path resolvingLinks(std::filesystem::path path);

/// Puts `bytes` in the place of the file at `path`, which at every moment, also after a crash or a loss of
/// power, holds either all of its old or all of the new bytes. Missing parents are made. A link stays, its
/// target gets the bytes. A temporary file beside the target, readable by nobody else, is written, flushed to
/// the disk and renamed; it is gone after every error (only a killed process can leave one: a name that
/// begins with ".corvane-").
///
/// An old file's permissions are kept, its owner, group, access-control list and extended attributes where
/// the system allows; where the group or the list cannot be kept, no group gets more than everybody has. A
/// new file follows the creation mask. Hard links to the old file keep the old bytes.
void writeAtomically(const std::filesystem::path& path, std::string_view bytes);

/// What permissions the file that takes another's place gets.
enum class Permissions : std::uint8_t {
    keep,  ///< The old file's.
    fresh, ///< A new file's, whatever was there before.
};

/// The same, but only if `path` still is in the state `expected` just before the rename; false and no change
/// otherwise. What happens between that look and the rename, a few microseconds, goes unseen.
[[nodiscard]] bool replaceIfUnchanged(const std::filesystem::path& path, std::string_view bytes,
                                      const FileState& expected, Permissions permissions = Permissions::keep);

/// Keeps `bytes`, the content of `original`, at `backup`. Never replaces anything: fails when something
/// stands there. From its first byte the backup is readable by nobody who could not read `original`; its
/// permissions end up being the original's. Flushed to the disk; gone after an error (but not after a kill).
void writeBackup(const std::filesystem::path& backup, std::string_view bytes,
                 const std::filesystem::path& original);

/// Keeps the file at `original` itself under the further name `backup` (a hard link to what links lead to),
/// which takes no right to read it. Never replaces anything.
void linkBackup(const std::filesystem::path& backup, const std::filesystem::path& original);

/// Whether something stands at `path`, be it a dangling link.
[[nodiscard]] bool nameIsTaken(const std::filesystem::path& path);

} // namespace corvane::files
