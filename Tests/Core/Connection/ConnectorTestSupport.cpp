#include "ConnectorTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace corvane::test {

namespace fs = std::filesystem;

CreationMask::CreationMask(mode_t mask)
    : before_(umask(mask)) {}

CreationMask::~CreationMask() {
    umask(before_);
}

ScratchHome::ScratchHome() = default;

ScratchFolder inMemory() {
    const char* set = std::getenv("TMPDIR");
    const std::string before = set == nullptr ? "" : set;
    if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);
    struct Restore {
        const std::string& before;
        bool wasSet;
        ~Restore() { wasSet ? setenv("TMPDIR", before.c_str(), 1) : unsetenv("TMPDIR"); }
    } const restore{before, set != nullptr};
    return ScratchFolder("home");
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> backupsIn(const fs::path& folder) {
    std::vector<std::string> names = namesIn(folder);
    std::erase_if(names,
                  [](const std::string& name) { return name.find(".corvane-backup-") == std::string::npos; });
    return names;
}

mode_t modeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

std::size_t openDescriptors() {
    return namesIn("/dev/fd").size();
}

ChildResult inChild(const std::function<ChildResult()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        ChildResult result = ChildResult::failed;
        try {
            result = body();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the child threw " << error.what();
        }
        if (testing::Test::HasFailure()) result = ChildResult::failed;
        std::fflush(nullptr);
        _exit(static_cast<int>(result));
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "the child ended by signal " << WTERMSIG(status);
    return WIFEXITED(status) ? static_cast<ChildResult>(WEXITSTATUS(status)) : ChildResult::failed;
}

void asOrdinaryUser(const fs::path& folder, const std::function<void()>& body,
                    const std::function<void()>& prepare) {
    constexpr uid_t nobody = 65'534;
    if (geteuid() == 0) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
            ASSERT_EQ(lchown(entry.path().c_str(), nobody, nobody), 0);
        }
        ASSERT_EQ(lchown(folder.c_str(), nobody, nobody), 0);
    }
    prepare();
    const ChildResult result = inChild([&] {
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
            ADD_FAILURE() << "cannot become an ordinary user";
        } else {
            body();
        }
        return ChildResult::passed;
    });
    EXPECT_EQ(result, ChildResult::passed) << "as an ordinary user";
}

} // namespace corvane::test
