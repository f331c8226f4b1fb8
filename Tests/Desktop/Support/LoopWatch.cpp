// Loaded into the application by LD_PRELOAD: a heartbeat of its main thread. Measures how long the thread
// sleeps outside of its event loop, for example for the reply of a server that hangs. Time that it computes,
// or waits for a processor on a busy machine, does not count.
//
// The figures are in the file that CORVANE_LOOP_WATCH names, which holds a LoopWatchRecord.

#include "Desktop/Support/LoopWatch.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using corvane::test::LoopWatchRecord;

constexpr std::int64_t nanoseconds = 1'000'000'000;

LoopWatchRecord* record = nullptr;
int schedule = -1; // the main thread's "schedstat"
std::int64_t lastAsleep = 0;

std::int64_t now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * nanoseconds + time.tv_nsec;
}

/// How long the main thread has been asleep in all: neither running nor waiting to run.
std::int64_t asleep() {
    std::array<char, 128> text{};
    long long running = 0;
    long long waiting = 0;
    if (pread(schedule, text.data(), text.size() - 1, 0) <= 0) return 0;
    std::sscanf(text.data(), "%lld %lld", &running, &waiting);
    return now() - running - waiting;
}

__attribute__((constructor)) void start() {
    const char* const path = std::getenv("CORVANE_LOOP_WATCH");
    if (path == nullptr) return;
    const int file = open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ftruncate(file, sizeof(LoopWatchRecord)) != 0) return;
    void* const memory = mmap(nullptr, sizeof(LoopWatchRecord), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    schedule = open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
    if (memory == MAP_FAILED || schedule < 0) return;
    record = static_cast<LoopWatchRecord*>(memory);
    lastAsleep = asleep();
    // What the application starts is not watched.
    unsetenv("LD_PRELOAD");
    unsetenv("CORVANE_LOOP_WATCH");
}

/// Whether this is the main thread in its event loop: libraries that wait for a reply poll their one
/// connection.
bool isLoop(nfds_t count) {
    return record != nullptr && count > 1 && gettid() == getpid();
}

void beginWait() {
    const std::int64_t slept = asleep() - lastAsleep;
    if (slept > record->longestSleep) record->longestSleep = slept;
    record->waits = record->waits + 1;
    record->isWaiting = 1;
}

void endWait() {
    lastAsleep = asleep();
    record->isWaiting = 0;
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int poll(pollfd* descriptors, nfds_t count, int timeout) {
    static const auto original = next<int (*)(pollfd*, nfds_t, int)>("poll");
    if (!isLoop(count)) return original(descriptors, count, timeout);
    beginWait();
    const int result = original(descriptors, count, timeout);
    endWait();
    return result;
}

int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
    static const auto original = next<int (*)(pollfd*, nfds_t, const timespec*, const sigset_t*)>("ppoll");
    if (!isLoop(count)) return original(descriptors, count, timeout, mask);
    beginWait();
    const int result = original(descriptors, count, timeout, mask);
    endWait();
    return result;
}
}
