#include "Support/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <unistd.h>

namespace corvane::files {

FileDescriptor::~FileDescriptor() {
    const int saved = errno;
    static_cast<void>(closeNow());
    errno = saved;
}

bool FileDescriptor::closeNow() {
    if (!isOpen()) return true;
    return close(std::exchange(number_, -1)) == 0 || errno == EINTR;
}

std::optional<std::string_view> readToEnd(const FileDescriptor& file, std::string& buffer,
                                          const ReadSizes& sizes) {
    try {
        // One byte more, so that the end of the file is seen without growing the buffer.
        buffer.resize(std::max(buffer.size(), sizes.expected + 1 + sizes.spare));
        std::size_t filled = 0;
        while (true) {
            const std::size_t room = buffer.size() - sizes.spare - filled;
            const ssize_t got = ::read(file.number(), buffer.data() + filled, room);
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return std::nullopt;
            if (got == 0) return std::string_view(buffer).substr(0, filled);
            filled += static_cast<std::size_t>(got);
            if (filled > sizes.most) {
                errno = EFBIG;
                return std::nullopt;
            }
            if (filled + sizes.spare == buffer.size()) buffer.resize(2 * buffer.size());
        }
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
    } catch (const std::length_error&) {
        errno = ENOMEM;
    }
    return std::nullopt;
}

} // namespace corvane::files
