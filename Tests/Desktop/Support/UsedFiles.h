#pragma once

#include <sys/types.h>
#include <vector>

namespace corvane::test {

/// If the environment variable CORVANE_USED_FILES names a folder, records the files that these processes have
/// mapped: programs, libraries, plugins, fonts. One line each, with the program and the file, separated by a
/// tab. Scripts/check-dependencies compares them with the packages that Scripts/dependencies installs.
void recordUsedFiles(const std::vector<pid_t>& processes);

} // namespace corvane::test
