#include "Platform/Linux/SingleInstanceLock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace corvane {

namespace fs = std::filesystem;
using files::FileDescriptor;

namespace {

// A process that has taken the lock soon listens; one that is exiting soon releases it.
constexpr std::chrono::seconds patience{5};
constexpr std::chrono::milliseconds pause{20};
constexpr std::size_t longestMessage = 4096; // bytes; the rest of a longer one is lost

/// Whether `folder` is a directory of this user, not a link, that nobody else can write.
bool isPrivate(const fs::path& folder) {
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == getuid() &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// The socket's address through the open folder, which fits however long the folder's own path is.
sockaddr_un address(const FileDescriptor& folder) {
    const std::string path = "/proc/self/fd/" + std::to_string(folder.number()) + "/corvane.socket";
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), std::begin(result.sun_path));
    return result;
}

} // namespace

SingleInstanceLock::SingleInstanceLock(fs::path folder)
    : path_(std::move(folder)) {}

fs::path SingleInstanceLock::standardFolder() {
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (runtime.startsWith('/') && isPrivate(runtime.toStdString())) return runtime.toStdString();
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error) / ("corvane-" + std::to_string(getuid()));
    if (error) return {};
    mkdir(folder.c_str(), S_IRWXU);
    return isPrivate(folder) ? folder : fs::path();
}

bool SingleInstanceLock::claim(const std::optional<std::string>& message) {
    if (path_.empty()) return true;
    folder_ = FileDescriptor(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FileDescriptor lock(openat(folder_.number(), "corvane.lock", O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                               S_IRUSR | S_IWUSR));
    if (lock.number() < 0) return true;
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (flock(lock.number(), LOCK_EX | LOCK_NB) == 0) {
            lock_ = std::move(lock);
            listen();
            return true;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) return true;
        if (!message || ask(*message) || std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(pause);
    }
}

void SingleInstanceLock::listen() {
    unlinkat(folder_.number(), "corvane.socket", 0);
    // Datagrams: each message arrives whole or not at all, so that no sender can block this process.
    FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un name = address(folder_);
    // The folder's permissions keep other users away from it.
    if (bind(socket.number(), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0) return;
    socket_ = std::move(socket);
    notifier_ = std::make_unique<QSocketNotifier>(socket_.number(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SingleInstanceLock::answer);
}

void SingleInstanceLock::answer() {
    for (;;) {
        std::array<char, longestMessage> bytes{};
        const ssize_t size = recv(socket_.number(), bytes.data(), bytes.size(), 0);
        if (size < 0) return;
        Q_EMIT asked(std::string(bytes.data(), static_cast<std::size_t>(size)));
    }
}

bool SingleInstanceLock::ask(const std::string& message) const {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un name = address(folder_);
    // A message stays queued until it is read. A full queue already holds the same request from others.
    return ::connect(socket.number(), reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0 &&
           (send(socket.number(), message.data(), message.size(), MSG_NOSIGNAL) >= 0 || errno == EAGAIN);
}

} // namespace corvane
