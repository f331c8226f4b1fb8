#pragma once

#include <unistd.h>
#include <utility>

namespace corvane {

/// A file descriptor that is closed at the end; -1 for none.
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
    ~FileDescriptor() {
        if (number_ >= 0) close(number_);
    }

    [[nodiscard]] int number() const { return number_; }

  private:
    int number_ = -1;
};

} // namespace corvane
