#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::test {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder(std::string_view name) {
    std::string pattern = (fs::temp_directory_path() / "corvane-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw fs::filesystem_error("mkdtemp", pattern, {errno, std::generic_category()});
    root_ = pattern;
    path_ = root_ / name;
    fs::create_directories(path_);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    for (auto it =
             fs::recursive_directory_iterator(root_, fs::directory_options::skip_permission_denied, ignored);
         it != fs::recursive_directory_iterator(); it.increment(ignored)) {
        if (it->is_directory(ignored) && !it->is_symlink(ignored)) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(root_, ignored);
}

std::string testData(std::string_view name) {
    const fs::path path = fs::path(CORVANE_TEST_DATA) / name;
    const std::optional<std::string> bytes = fileBytes(path);
    EXPECT_TRUE(bytes.has_value()) << path;
    return bytes.value_or("");
}

std::optional<std::string> fileBytes(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void writeFile(const fs::path& path, std::string_view bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        ADD_FAILURE() << "cannot write " << path;
        std::abort();
    }
}

void setModificationDate(const fs::path& path, Date date) {
    const struct timespec now { 0, UTIME_NOW };
    const struct timespec wanted { date.seconds(), date.nanoseconds() };
    const struct timespec times[] = {now, wanted};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

std::optional<std::string> MemoryUserDefaults::data(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void MemoryUserDefaults::setData(std::string_view key, std::string_view bytes) {
    values.insert_or_assign(std::string(key), std::string(bytes));
}

bool MemoryUserDefaults::boolean(std::string_view key) const {
    const auto found = booleans.find(key);
    return found != booleans.end() && found->second;
}

void MemoryUserDefaults::setBoolean(std::string_view key, bool value) {
    booleans.insert_or_assign(std::string(key), value);
}

} // namespace corvane::test
