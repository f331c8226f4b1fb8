#include "Platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace corvane {

void Platform::protectSupportDirectory(const CorvanePaths& paths) {
    std::error_code ignored;
    std::filesystem::create_directories(paths.support, ignored);
    std::filesystem::permissions(paths.support, std::filesystem::perms::owner_all, ignored);
}

} // namespace corvane
