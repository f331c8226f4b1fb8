#pragma once

#include "Support/Date.h"

#include <sys/stat.h>

namespace corvane {

/// The modification date that a file's status carries, with the file system's full resolution.
[[nodiscard]] Date modificationDate(const struct stat& status);

} // namespace corvane
