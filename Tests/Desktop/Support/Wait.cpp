#include "Desktop/Support/Wait.h"

#include <thread>

namespace corvane::test {

bool waitUntil(std::chrono::milliseconds timeout, const std::function<bool()>& condition) {
    constexpr std::chrono::milliseconds pause{10};
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        const bool isLastLook = std::chrono::steady_clock::now() >= deadline;
        if (condition()) return true;
        if (isLastLook) return false;
        std::this_thread::sleep_for(pause);
    }
}

} // namespace corvane::test
