#pragma once

#include "Support/Date.h"
#include "Support/UserDefaults.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::test {

/// A test's own folder in the system's temporary folder, removed at the end with everything in it, even what
/// was made unreadable. `name` becomes the last component of its path.
class ScratchFolder {
  public:
    explicit ScratchFolder(std::string_view name = "Corvane");
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  private:
    std::filesystem::path root_;
    std::filesystem::path path_;
};

/// The bytes of a file under Tests/Data. The test fails when there is no such file.
[[nodiscard]] std::string testData(std::string_view name);

/// All bytes of a file; none when it cannot be read.
[[nodiscard]] std::optional<std::string> fileBytes(const std::filesystem::path& path);

/// Writes a regular file, creating missing folders, and aborts the test program if that fails.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

/// Sets a file's modification time to `date`, to the nanosecond, without following a link.
void setModificationDate(const std::filesystem::path& path, Date date);

/// User defaults in memory.
class MemoryUserDefaults : public UserDefaults {
  public:
    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override;
    void setData(std::string_view key, std::string_view bytes) override;
    [[nodiscard]] bool boolean(std::string_view key) const override;
    void setBoolean(std::string_view key, bool value) override;

    std::map<std::string, std::string, std::less<>> values;
    std::map<std::string, bool, std::less<>> booleans;
};

} // namespace corvane::test
