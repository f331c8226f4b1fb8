#include "Support/FilePlatform.h"

#include "Support/FileDescriptor.h"

#include <cerrno>
#include <copyfile.h>
#include <cstdio>
#include <fcntl.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::files::platform {

bool flushToDisk(int descriptor) {
    // fsync leaves the bytes in the drive's own buffer; not every file system supports the stronger call.
    return fcntl(descriptor, F_FULLFSYNC) != -1 || fsync(descriptor) == 0;
}

mode_t creationMask() {
    const mode_t mask = umask(077);
    umask(mask);
    return mask;
}

bool copyAttributes(const std::filesystem::path& from, int descriptor) {
    const FileDescriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!source.isOpen()) return true;
    static_cast<void>(fcopyfile(source.number(), descriptor, nullptr, COPYFILE_XATTR));
    // Access-control lists add to or take from the mode for named users.
    bool accessKept = true;
    if (acl_t list = acl_get_fd_np(source.number(), ACL_TYPE_EXTENDED)) {
        accessKept = acl_set_fd_np(descriptor, list, ACL_TYPE_EXTENDED) == 0;
        acl_free(list);
    } else if (acl_t empty = acl_init(0)) {
        // New files may inherit entries from the folder. A file system without lists rejects this.
        static_cast<void>(acl_set_fd_np(descriptor, empty, ACL_TYPE_EXTENDED));
        acl_free(empty);
    }
    return accessKept;
}

bool renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0) return true;
    if (errno != ENOTSUP && errno != EINVAL) return false;
    struct stat status {};
    if (lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

} // namespace corvane::files::platform
