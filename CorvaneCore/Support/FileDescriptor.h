#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::files {

/// Owns a file descriptor and closes it on destruction; -1 for none.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number)
        : number_(number) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    /// Preserves errno.
    ~FileDescriptor();

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    /// Closes; returns false with errno set on failure, which on some file systems is the first report of a
    /// failed write. A close that is interrupted counts as done.
    [[nodiscard]] bool closeNow();

  private:
    int number_ = -1;
};

/// How a file is to be read; all in bytes.
struct ReadSizes {
    std::size_t expected = 0;             ///< The expected size of the file.
    std::size_t most = std::string::npos; ///< A file that holds more is an error.
    std::size_t spare = 0;                ///< Bytes of the buffer to keep free after those read.
};

/// Reads `file` to its end, overwriting `buffer`; the buffer grows as needed and never shrinks, so that it
/// can be reused for many files. Returns what was read, as a view into `buffer`. None with errno set on
/// failure: EFBIG for a file that is too large, ENOMEM if memory runs out.
[[nodiscard]] std::optional<std::string_view> readToEnd(const FileDescriptor& file, std::string& buffer,
                                                        const ReadSizes& sizes);

} // namespace corvane::files
