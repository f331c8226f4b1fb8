#include "Support/FilePlatform.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace corvane::files::platform {

namespace {

bool copyAttribute(const std::filesystem::path& from, int descriptor, const char* name) {
    const ssize_t size = getxattr(from.c_str(), name, nullptr, 0);
    if (size < 0) return false;
    std::string value(static_cast<std::size_t>(size), '\0');
    const ssize_t got = getxattr(from.c_str(), name, value.data(), value.size());
    return got == size && fsetxattr(descriptor, name, value.data(), value.size(), 0) == 0;
}

} // namespace

bool flushToDisk(int descriptor) {
    return fsync(descriptor) == 0;
}

mode_t creationMask() {
    // umask() can only be read by changing it, for all threads; the kernel also reports it here.
    std::ifstream status("/proc/self/status");
    constexpr std::string_view label = "Umask:";
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(label)) {
            return static_cast<mode_t>(std::strtoul(line.c_str() + label.size(), nullptr, 8));
        }
    }
    const mode_t mask = umask(077);
    umask(mask);
    return mask;
}

bool copyAttributes(const std::filesystem::path& from, int descriptor) {
    constexpr const char* accessList = "system.posix_acl_access";
    const ssize_t size = listxattr(from.c_str(), nullptr, 0);
    std::string names(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    const ssize_t got = size > 0 ? listxattr(from.c_str(), names.data(), names.size()) : 0;
    if (got < 0) return false;

    bool hasList = false;
    bool listKept = true;
    for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
        const std::string name = names.c_str() + at;
        at += name.size() + 1;
        if (name == accessList) {
            hasList = true;
            listKept = copyAttribute(from, descriptor, accessList);
        } else if (name.starts_with("user.")) {
            // A lost comment or tag is no reason to fail.
            static_cast<void>(copyAttribute(from, descriptor, name.c_str()));
        }
    }
    // New files may inherit a default list from the folder.
    if (!hasList) static_cast<void>(fremovexattr(descriptor, accessList));
    return listKept;
}

bool renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // This file system does not support such a rename.
    struct stat status {};
    if (lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

} // namespace corvane::files::platform
