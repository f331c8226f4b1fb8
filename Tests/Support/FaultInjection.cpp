#include "FaultInjection.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace corvane::test::faults {

namespace {

struct State {
    Plan plan;
    bool armed = false;
    int calls = 0;
    std::string failing; ///< The function that keeps failing.
};

State& state() {
    static State state;
    return state;
}

enum class Fate { pass, fail, writeLittle, killAfter };

Fate enter(std::string_view function, int descriptor = -1, std::string_view path = {}) {
    State& now = state();
    if (!now.armed) return Fate::pass;
    if (now.plan.counts && !now.plan.counts(function, path)) return Fate::pass;
    if (now.plan.observer) {
        now.armed = false;
        now.plan.observer(function, descriptor);
        now.armed = true;
    }
    ++now.calls;
    if (now.failing == function) {
        errno = now.plan.error;
        return Fate::fail;
    }
    if (now.calls != now.plan.call && now.plan.action != Action::failEach) return Fate::pass;
    switch (now.plan.action) {
    case Action::keepFailing:
        now.failing = function;
        [[fallthrough]];
    case Action::fail:
    case Action::failEach:
        errno = now.plan.error;
        return Fate::fail;
    case Action::writeLittle:
        return Fate::writeLittle;
    case Action::killBefore:
        kill(getpid(), SIGKILL);
        break;
    case Action::killAfter:
        return Fate::killAfter;
    }
    return Fate::pass;
}

/// The return value of a failed call.
template <typename Result>
constexpr Result failed() {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return -1;
    }
}

template <typename Call>
auto decide(std::string_view function, int descriptor, std::string_view path, const Call& call)
    -> decltype(call()) {
    const Fate fate = enter(function, descriptor, path);
    if (fate == Fate::fail) return failed<decltype(call())>();
    const auto result = call();
    if (fate == Fate::killAfter) kill(getpid(), SIGKILL);
    return result;
}

} // namespace

void arm(const Plan& plan) {
    state() = {plan, true, 0, {}};
}

int disarm() {
    state().armed = false;
    return state().calls;
}

} // namespace corvane::test::faults

// The linker redirects the program's calls to __wrap_ and provides the system's functions as __real_.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
using corvane::test::faults::decide;
using corvane::test::faults::enter;
using corvane::test::faults::Fate;

extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_openat(int folder, const char* path, int flags, ...);
int __real_close(int descriptor);
ssize_t __real_read(int descriptor, void* bytes, std::size_t size);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);
int __real_fsync(int descriptor);
int __real_chmod(const char* path, mode_t mode);
int __real_fchmod(int descriptor, mode_t mode);
int __real_fstat(int descriptor, struct stat* status);
int __real_fstatat(int folder, const char* path, struct stat* status, int flags);
int __real_stat(const char* path, struct stat* status);
int __real_lstat(const char* path, struct stat* status);
int __real_rename(const char* from, const char* to);
int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags);
int __real_linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags);
int __real_unlink(const char* path);
int __real_unlinkat(int folder, const char* path, int flags);
int __real_mkdir(const char* path, mode_t mode);
struct dirent* __real_readdir(DIR* folder);

int __wrap_open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return decide("open", -1, path, [&] { return __real_open(path, flags, mode); });
}
// Without a mode: none of the program's calls creates a file.
int __wrap_openat(int folder, const char* path, int flags, ...) {
    return decide("openat", folder, path, [&] { return __real_openat(folder, path, flags); });
}
int __wrap_close(int descriptor) {
    // A close that fails still closes.
    const Fate fate = enter("close", descriptor);
    const int error = errno;
    const int result = __real_close(descriptor);
    if (fate == Fate::killAfter) kill(getpid(), SIGKILL);
    errno = error;
    return fate == Fate::fail ? -1 : result;
}
ssize_t __wrap_read(int descriptor, void* bytes, std::size_t size) {
    return decide("read", descriptor, {}, [&] { return __real_read(descriptor, bytes, size); });
}
ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    const Fate fate = enter("write", descriptor);
    if (fate == Fate::fail) return -1;
    const ssize_t result = __real_write(descriptor, bytes, fate == Fate::writeLittle && size > 0 ? 1 : size);
    if (fate == Fate::killAfter) kill(getpid(), SIGKILL);
    return result;
}
int __wrap_fsync(int descriptor) {
    return decide("fsync", descriptor, {}, [&] { return __real_fsync(descriptor); });
}
int __wrap_chmod(const char* path, mode_t mode) {
    return decide("chmod", -1, path, [&] { return __real_chmod(path, mode); });
}
int __wrap_fchmod(int descriptor, mode_t mode) {
    return decide("fchmod", descriptor, {}, [&] { return __real_fchmod(descriptor, mode); });
}
int __wrap_fstat(int descriptor, struct stat* status) {
    return decide("fstat", descriptor, {}, [&] { return __real_fstat(descriptor, status); });
}
int __wrap_fstatat(int folder, const char* path, struct stat* status, int flags) {
    return decide("fstatat", folder, path, [&] { return __real_fstatat(folder, path, status, flags); });
}
int __wrap_stat(const char* path, struct stat* status) {
    return decide("stat", -1, path, [&] { return __real_stat(path, status); });
}
int __wrap_lstat(const char* path, struct stat* status) {
    return decide("lstat", -1, path, [&] { return __real_lstat(path, status); });
}
int __wrap_rename(const char* from, const char* to) {
    return decide("rename", -1, from, [&] { return __real_rename(from, to); });
}
int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return decide("renameat2", -1, from,
                  [&] { return __real_renameat2(fromFolder, from, toFolder, to, flags); });
}
int __wrap_linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    return decide("linkat", -1, from, [&] { return __real_linkat(fromFolder, from, toFolder, to, flags); });
}
int __wrap_unlink(const char* path) {
    return decide("unlink", -1, path, [&] { return __real_unlink(path); });
}
int __wrap_unlinkat(int folder, const char* path, int flags) {
    return decide("unlinkat", folder, path, [&] { return __real_unlinkat(folder, path, flags); });
}
int __wrap_mkdir(const char* path, mode_t mode) {
    return decide("mkdir", -1, path, [&] { return __real_mkdir(path, mode); });
}
struct dirent* __wrap_readdir(DIR* folder) {
    return decide("readdir", -1, {}, [&] { return __real_readdir(folder); });
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
