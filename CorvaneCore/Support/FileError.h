#pragma once

#include "Support/Words.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace corvane::files {

/// A failed operation on a file. `code()` is the system's error.
class FileError : public std::system_error {
  public:
    enum class Operation : std::uint8_t { read, write, backUp, createFolder, move, trash };

    FileError(Operation operation, std::filesystem::path path, int error);
    FileError(Operation operation, std::filesystem::path path, std::error_code error);

    [[nodiscard]] Operation operation() const { return operation_; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// One sentence for users that names the file and the reason, with a full stop at its end.
    [[nodiscard]] std::string description(Words words = inEnglish) const;

  private:
    Operation operation_;
    std::filesystem::path path_;
};

} // namespace corvane::files
