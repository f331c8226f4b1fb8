#pragma once

#include <cstdint>

namespace corvane::test {

/// What the library LoopWatch, loaded into the application, has measured of its main thread.
struct LoopWatchRecord {
    volatile std::int64_t longestSleep; ///< outside of the event loop, without a break, in nanoseconds
    volatile std::int64_t waits;        ///< of the event loop
    volatile std::int64_t isWaiting;    ///< whether it waits for events now
};

} // namespace corvane::test
