#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// Takes files out of the way without destroying them. Stateless; errors are thrown as files::FileError.
///
/// Slashes at the end of a path are ignored. A path that ends in no name of its own ("/", "." or "..") is an
/// error.
class SafeTrash {
  public:
    /// Moves a file or folder to the user's Trash. Returns where it lies there; none when the system does not
    /// say.
    // NOLINTNEXTLINE(modernize-use-nodiscard): the move is what matters
    std::optional<std::filesystem::path> trash(const std::filesystem::path& path) const;

    /// Moves a file or folder into `folder`, which is made when missing, and returns where it lies now. When
    /// its name is taken there, " 2", " 3" and on follow the name, before the extension. Never replaces
    /// anything. On another disk it is copied, with its permissions, before the original is removed.
    // NOLINTNEXTLINE(modernize-use-nodiscard)
    std::filesystem::path move(const std::filesystem::path& path, const std::filesystem::path& folder) const;
};

} // namespace corvane
