#include "Support/CorvanePaths.h"

namespace corvane {

CorvanePaths CorvanePaths::standard(const std::filesystem::path& home) {
    return {home / "Library/Application Support/Corvane"};
}

std::filesystem::path CorvanePaths::events() const {
    return support / "events";
}

std::filesystem::path CorvanePaths::hookScript() const {
    return support / "bin/corvane-hook";
}

} // namespace corvane
