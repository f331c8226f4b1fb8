#include "Connection/SafeTrash.h"

#include "Support/FilePlatform.h"
#include "Support/Files.h"

#include <QFile>
#include <QString>

#include <cerrno>
#include <string>
#include <system_error>

namespace corvane {

namespace fs = std::filesystem;
using files::FileError;

namespace {

void moveToOtherDisk(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (error) {
        std::error_code ignored;
        // What stands there now is the part copied, unless the name was taken just then.
        if (error != std::errc::file_exists) fs::remove_all(to, ignored);
        throw FileError(FileError::Operation::move, from, error);
    }
    fs::remove_all(from, error);
    if (error) throw FileError(FileError::Operation::move, from, error);
}

} // namespace

std::optional<fs::path> SafeTrash::trash(const fs::path& path) const {
    if (!files::nameIsTaken(path)) throw FileError(FileError::Operation::trash, path, ENOENT);
    QFile file(QFile::decodeName(path.c_str()));
    if (!file.moveToTrash()) {
        const bool forbidden = file.error() == QFileDevice::PermissionsError;
        throw FileError(FileError::Operation::trash, path, forbidden ? EACCES : ENOTSUP);
    }
    fs::path trashed = QFile::encodeName(file.fileName()).toStdString();
    if (trashed.empty() || trashed == path) return std::nullopt;
    return trashed;
}

fs::path SafeTrash::move(const fs::path& path, const fs::path& folder) const {
    files::createDirectories(folder);
    const std::string name = path.filename().string();
    // A dot at the end begins no extension.
    const std::string extension = name.ends_with('.') ? std::string() : path.extension().string();
    const std::string base = name.substr(0, name.size() - extension.size());
    fs::path candidate = folder / name;
    for (int n = 2; files::nameIsTaken(candidate); ++n) {
        std::string numbered = base;
        numbered += " " + std::to_string(n);
        candidate = folder / (numbered += extension);
    }
    if (!files::platform::renameWithoutReplacing(path, candidate)) {
        const int error = errno;
        if (error != EXDEV) throw FileError(FileError::Operation::move, path, error);
        moveToOtherDisk(path, candidate);
    }
    return candidate;
}

} // namespace corvane
