#include "Support/FileTime.h"

namespace corvane {

Date modificationDate(const struct stat& status) {
    return {status.st_mtimespec.tv_sec, static_cast<std::int32_t>(status.st_mtimespec.tv_nsec)};
}

} // namespace corvane
