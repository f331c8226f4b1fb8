#include "Support/FileTime.h"

namespace corvane {

Date modificationDate(const struct stat& status) {
    return {status.st_mtim.tv_sec, static_cast<std::int32_t>(status.st_mtim.tv_nsec)};
}

} // namespace corvane
