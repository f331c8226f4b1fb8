#include "Platform/Shared/UnixSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::array endingSignals{SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> pipeEnds{-1, -1};

// A signal handler: only async-signal-safe calls.
void handle(int /*signal*/) {
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
    errno = savedError;
}

} // namespace

UnixSignals::UnixSignals() {
    if (pipe(pipeEnds.data()) != 0) return;
    for (const int end : pipeEnds) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier_ = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT received();
    });
    for (const int signal : endingSignals)
        std::signal(signal, handle);
}

UnixSignals::~UnixSignals() {
    for (const int signal : endingSignals)
        std::signal(signal, SIG_DFL);
    delete notifier_;
    for (int& end : pipeEnds) {
        if (end >= 0) close(end);
        end = -1;
    }
}

} // namespace corvane
