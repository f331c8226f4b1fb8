#include "Connection/SafeTrash.h"

#include "Support/FilePlatform.h"
#include "Support/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace fs = std::filesystem;
using files::FileError;

namespace {

/// `path` without trailing slashes. Throws for one that does not end in a name, such as "/" or "..": the
/// system may report that it is on another file system, and it would be copied and removed.
fs::path withName(fs::path path, FileError::Operation operation) {
    while (!path.has_filename() && path.has_relative_path())
        path = path.parent_path();
    const fs::path name = path.filename();
    if (name.empty() || name == "." || name == "..") throw FileError(operation, path, EINVAL);
    return path;
}

/// Whether the user's Trash exists or can be created. If not, Qt 6.4 moves the item into the working
/// directory, or retries for ever.
bool hasTrash() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (!QDir().mkpath(data)) return false;
    for (const char* const folder : {"", "/Trash", "/Trash/files", "/Trash/info"}) {
        const QFileInfo found(data + QLatin1String(folder));
        if (found.exists() && !(found.isDir() && found.isWritable())) return false;
    }
    return true;
}

void moveToOtherDisk(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (error) {
        std::error_code ignored;
        // `to` now holds a partial copy, unless the name was taken meanwhile.
        if (error != std::errc::file_exists) fs::remove_all(to, ignored);
        throw FileError(FileError::Operation::move, from, error);
    }
    fs::remove_all(from, error);
    if (!error) return;
    // A folder may be partly removed: its copy stays. A file is still whole: its copy is removed.
    std::error_code ignored;
    const fs::file_status left = fs::symlink_status(from, ignored);
    if (fs::exists(left) && !fs::is_directory(left)) fs::remove(to, ignored);
    throw FileError(FileError::Operation::move, from, error);
}

} // namespace

std::optional<fs::path> SafeTrash::trash(const fs::path& path) const {
    const fs::path item = withName(path, FileError::Operation::trash);
    if (!files::nameIsTaken(item)) throw FileError(FileError::Operation::trash, item, ENOENT);
    // Qt 6.8 reports success for a copy in the Trash when the item cannot be removed from its folder.
    const fs::path folder = item.has_parent_path() ? item.parent_path() : fs::path(".");
    if (access(folder.c_str(), W_OK | X_OK) != 0) throw FileError(FileError::Operation::trash, item, errno);
    QFile file(QFile::decodeName(item.c_str()));
    // QFile does not report the reason; the item has nowhere to go.
    if (!hasTrash() || !file.moveToTrash() || files::nameIsTaken(item))
        throw FileError(FileError::Operation::trash, item, ENOTSUP);
    fs::path trashed = QFile::encodeName(file.fileName()).toStdString();
    if (trashed.empty() || trashed == item) return std::nullopt;
    return trashed;
}

fs::path SafeTrash::move(const fs::path& path, const fs::path& folder) const {
    const fs::path item = withName(path, FileError::Operation::move);
    files::createDirectories(folder);
    const std::string name = item.filename().string();
    // A trailing dot begins no extension.
    const std::string extension = name.ends_with('.') ? std::string() : item.extension().string();
    const std::string base = name.substr(0, name.size() - extension.size());
    fs::path candidate = folder / name;
    for (int n = 2; files::nameIsTaken(candidate); ++n) {
        std::string numbered = base;
        numbered += " " + std::to_string(n);
        candidate = folder / (numbered += extension);
    }
    if (!files::platform::renameWithoutReplacing(item, candidate)) {
        const int error = errno;
        if (error != EXDEV) throw FileError(FileError::Operation::move, item, error);
        moveToOtherDisk(item, candidate);
    }
    return candidate;
}

} // namespace corvane
