#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::files {

/// A file descriptor of the system, closed at the end; -1 for none.
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
    /// Leaves errno alone.
    ~FileDescriptor();

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    /// Closes; false with errno set on failure, which on some file systems is the first report of a failed
    /// write. An interrupted close has closed.
    [[nodiscard]] bool closeNow();

  private:
    int number_ = -1;
};

/// How a file is to be read; all in bytes.
struct ReadSizes {
    std::size_t expected = 0;             ///< What the file is thought to hold.
    std::size_t most = std::string::npos; ///< A file that holds more is an error.
    std::size_t spare = 0;                ///< Bytes of the buffer to keep behind those read.
};

/// Reads from `file` to its end, over whatever `buffer` holds; the buffer grows where it must and is never
/// made smaller, so that it serves for many files. Returns what was read, a part of `buffer`. None with errno
/// set on failure: EFBIG for a file that is too large, ENOMEM without memory.
[[nodiscard]] std::optional<std::string_view> readToEnd(const FileDescriptor& file, std::string& buffer,
                                                        const ReadSizes& sizes);

} // namespace corvane::files
