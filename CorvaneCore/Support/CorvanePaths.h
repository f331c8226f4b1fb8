#pragma once

#include <filesystem>

namespace corvane {

/// Where the application keeps its files. A plain value; touches no file.
struct CorvanePaths {
    /// The support directory.
    std::filesystem::path support;

    bool operator==(const CorvanePaths&) const = default;

    /// The standard locations under a user's home directory, which the hook program relies on.
    static CorvanePaths standard(const std::filesystem::path& home);

    /// The inbox directory, into which the hook program drops event files.
    [[nodiscard]] std::filesystem::path events() const;

    /// The hook program that the agents run.
    [[nodiscard]] std::filesystem::path hookScript() const;
};

} // namespace corvane
