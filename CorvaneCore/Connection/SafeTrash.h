#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// Moves files out of the way without destroying them. Stateless; errors are thrown as files::FileError.
///
/// Trailing slashes in a path are ignored. A path without a name of its own at its end ("/", "." or "..") is
/// an error.
class SafeTrash {
  public:
    /// Moves a file or folder to the user's Trash. Returns its new path; none when the system does not report
    /// it.
    // NOLINTNEXTLINE(modernize-use-nodiscard): the move is what matters
    std::optional<std::filesystem::path> trash(const std::filesystem::path& path) const;

    /// Moves a file or folder into `folder`, which is created if missing, and returns its new path. When its
    /// name is taken there, " 2", " 3" and so on follow the name, before the extension. Never replaces
    /// anything. To another file system it is copied, with its permissions, before the original is removed.
    // NOLINTNEXTLINE(modernize-use-nodiscard)
    std::filesystem::path move(const std::filesystem::path& path, const std::filesystem::path& folder) const;
};

} // namespace corvane
