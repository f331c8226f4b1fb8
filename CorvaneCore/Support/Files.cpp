#include "Support/Files.h"

#include "Support/FileDescriptor.h"
#include "Support/FilePlatform.h"
#include "Support/FileTime.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane::files {

namespace fs = std::filesystem;

namespace {

using Operation = FileError::Operation;

constexpr mode_t permissionBits = 07777;

/// Removes a partly written file unless it is kept. Preserves errno.
class Unfinished {
  public:
    explicit Unfinished(fs::path path)
        : path_(std::move(path)) {}
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;
    ~Unfinished() {
        if (kept_) return;
        const int saved = errno;
        static_cast<void>(unlink(path_.c_str()));
        errno = saved;
    }

    void keep() { kept_ = true; }

  private:
    fs::path path_;
    bool kept_ = false;
};

FileDescriptor openRetrying(const fs::path& path, int flags, mode_t mode = 0) {
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return FileDescriptor(descriptor);
}

FileState stateFrom(const struct stat& status) {
    FileState state;
    state.kind = S_ISREG(status.st_mode)   ? FileState::Kind::plain
                 : S_ISDIR(status.st_mode) ? FileState::Kind::folder
                                           : FileState::Kind::other;
    state.device = static_cast<std::uint64_t>(status.st_dev);
    state.number = static_cast<std::uint64_t>(status.st_ino);
    state.size = static_cast<std::int64_t>(status.st_size);
    state.modified = modificationDate(status);
    return state;
}

/// None when nothing exists there.
std::optional<struct stat> statusOf(const fs::path& path, Operation operation) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) return status;
    if (errno == ENOENT) return std::nullopt;
    throw FileError(operation, path, errno);
}

/// The errno for a file that is not a regular file; 0 for one that is.
int refusal(FileState::Kind kind) {
    if (kind == FileState::Kind::folder) return EISDIR;
    return kind == FileState::Kind::other ? EINVAL : 0;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t wrote = write(descriptor, bytes.data(), bytes.size());
        if (wrote < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(wrote));
    }
    return true;
}

bool flush(int descriptor) {
    bool flushed = false;
    do {
        flushed = platform::flushToDisk(descriptor);
    } while (!flushed && errno == EINTR);
    return flushed;
}

/// Makes a rename survive a power failure. The rename has happened and the bytes are safe, so a failure here
/// (not every file system supports it) is not reported to the caller.
void flushFolder(const fs::path& folder) {
    const FileDescriptor descriptor = openRetrying(folder, O_RDONLY | O_DIRECTORY);
    if (descriptor.isOpen()) static_cast<void>(flush(descriptor.number()));
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// Gives `descriptor` the permissions of `original`, whose status is `status`, or fewer; never more.
bool takeOverPermissions(int descriptor, const fs::path& original, const struct stat& status) {
    struct stat own {};
    if (fstat(descriptor, &own) != 0) return false;
    if (own.st_uid != status.st_uid || own.st_gid != status.st_gid) {
        // Only root may give files away; a group that the user belongs to can still be kept.
        if (fchown(descriptor, status.st_uid, status.st_gid) != 0) {
            static_cast<void>(fchown(descriptor, static_cast<uid_t>(-1), status.st_gid));
        }
        if (fstat(descriptor, &own) != 0) return false;
    }
    mode_t mode = status.st_mode & permissionBits;
    // The mode is set last: changing the owner clears special bits, and a copied list sets the group's bits.
    const bool listKept = platform::copyAttributes(original, descriptor);
    if (own.st_uid != status.st_uid || own.st_gid != status.st_gid) mode &= ~mode_t{06000};
    if (own.st_gid != status.st_gid || !listKept) mode &= static_cast<mode_t>(~070U | ((mode & 07U) << 3U));
    return fchmod(descriptor, mode) == 0;
}

/// A new empty file beside `target`, readable by nobody else, and its path.
std::pair<FileDescriptor, fs::path> createTemporary(const fs::path& target) {
    static std::atomic<unsigned> counter = 0;
    constexpr int attempts = 1'000;
    const std::string prefix = ".corvane-" + std::to_string(getpid()) + "-";
    for (int i = 0; i < attempts; ++i) {
        const fs::path path = folderOf(target) / (prefix + std::to_string(counter++) + ".tmp");
        FileDescriptor descriptor = openRetrying(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (descriptor.isOpen()) return {std::move(descriptor), path};
        if (errno != EEXIST) throw FileError(Operation::write, target, errno);
    }
    throw FileError(Operation::write, target, EEXIST);
}

bool replace(const fs::path& path, std::string_view bytes, const FileState* expected,
             Permissions permissions) {
    const fs::path target = resolvingLinks(path);
    createDirectories(folderOf(target));
    const std::optional<struct stat> old = statusOf(target, Operation::write);
    if (old) {
        if (const int error = refusal(stateFrom(*old).kind)) throw FileError(Operation::write, path, error);
    }

    auto [descriptor, temporary] = createTemporary(target);
    Unfinished unfinished(temporary);
    const bool keepsPermissions = old && permissions == Permissions::keep;
    const bool permitted = keepsPermissions
                               ? takeOverPermissions(descriptor.number(), target, *old)
                               : fchmod(descriptor.number(), 0666 & ~platform::creationMask()) == 0;
    if (!permitted || !writeAll(descriptor.number(), bytes) || !flush(descriptor.number()) ||
        !descriptor.closeNow()) {
        throw FileError(Operation::write, path, errno);
    }
    if (expected != nullptr && state(path) != *expected) return false;
    if (rename(temporary.c_str(), target.c_str()) != 0) throw FileError(Operation::write, path, errno);
    unfinished.keep();
    flushFolder(folderOf(target));
    return true;
}

} // namespace

FileState state(const fs::path& path) {
    const std::optional<struct stat> status = statusOf(path, Operation::read);
    return status ? stateFrom(*status) : FileState();
}

FileContent read(const fs::path& path) {
    constexpr int attempts = 4;
    for (int i = 0; i < attempts; ++i) {
        // Checked first, since merely opening some devices has side effects.
        if (const int error = refusal(state(path).kind)) throw FileError(Operation::read, path, error);
        const FileDescriptor descriptor = openRetrying(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
        struct stat before {};
        if (!descriptor.isOpen() || fstat(descriptor.number(), &before) != 0) {
            throw FileError(Operation::read, path, errno);
        }
        const FileState found = stateFrom(before);
        if (const int error = refusal(found.kind)) throw FileError(Operation::read, path, error);
        std::string bytes;
        const ReadSizes sizes{.expected = static_cast<std::size_t>(found.size)};
        const std::optional<std::string_view> all = readToEnd(descriptor, bytes, sizes);
        if (!all) throw FileError(Operation::read, path, errno);
        bytes.resize(all->size());
        struct stat after {};
        if (fstat(descriptor.number(), &after) != 0) throw FileError(Operation::read, path, errno);
        if (stateFrom(after) == found) return {std::move(bytes), found};
    }
    throw FileError(Operation::read, path, EBUSY);
}

void createDirectories(const fs::path& folder) {
    if (folder.empty() || mkdir(folder.c_str(), 0777) == 0) return;
    int error = errno;
    const fs::path parent = folder.parent_path();
    if (error == ENOENT && !parent.empty() && parent != folder) {
        createDirectories(parent);
        if (mkdir(folder.c_str(), 0777) == 0) return;
        error = errno;
    }
    // mkdir may report a read-only disk or missing permissions for a folder that exists.
    struct stat status {};
    if (stat(folder.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) return;
        error = EEXIST;
    }
    throw FileError(Operation::createFolder, folder, error);
}

fs::path resolvingLinks(fs::path path) {
    constexpr int maximumLinks = 40; // the limit of Linux
    const fs::path given = path;
    for (int links = 0; links <= maximumLinks; ++links) {
        struct stat status {};
        if (lstat(path.c_str(), &status) != 0) {
            if (errno == ENOENT) return path;
            throw FileError(Operation::write, given, errno);
        }
        if (!S_ISLNK(status.st_mode)) return path;
        std::error_code error;
        const fs::path next = fs::read_symlink(path, error);
        if (error) throw FileError(Operation::write, given, error);
        // ".." stays: the system resolves it from the real folder behind a linked parent.
        path = next.is_absolute() ? next : folderOf(path) / next;
    }
    throw FileError(Operation::write, given, ELOOP);
}

void writeAtomically(const fs::path& path, std::string_view bytes) {
    static_cast<void>(replace(path, bytes, nullptr, Permissions::keep));
}

bool replaceIfUnchanged(const fs::path& path, std::string_view bytes, const FileState& expected,
                        Permissions permissions) {
    return replace(path, bytes, &expected, permissions);
}

void writeBackup(const fs::path& backup, std::string_view bytes, const fs::path& original) {
    const std::optional<struct stat> status = statusOf(original, Operation::backUp);
    if (!status) throw FileError(Operation::backUp, original, ENOENT);
    FileDescriptor descriptor = openRetrying(backup, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!descriptor.isOpen()) throw FileError(Operation::backUp, original, errno);
    Unfinished unfinished(backup);
    if (!writeAll(descriptor.number(), bytes) ||
        !takeOverPermissions(descriptor.number(), original, *status) || !flush(descriptor.number()) ||
        !descriptor.closeNow()) {
        throw FileError(Operation::backUp, original, errno);
    }
    unfinished.keep();
    flushFolder(folderOf(backup));
}

void linkBackup(const fs::path& backup, const fs::path& original) {
    if (linkat(AT_FDCWD, original.c_str(), AT_FDCWD, backup.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        throw FileError(Operation::backUp, original, errno);
    }
    flushFolder(folderOf(backup));
}

bool nameIsTaken(const fs::path& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) == 0) return true;
    if (errno == ENOENT) return false;
    throw FileError(Operation::backUp, path, errno);
}

} // namespace corvane::files
