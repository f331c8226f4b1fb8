#pragma once

#include <chrono>
#include <functional>

namespace corvane::test {

/// Polls `condition` until it holds or `timeout` has passed; returns whether it held. The last check begins
/// after `timeout`, so that a caller delayed between two checks misses nothing.
bool waitUntil(std::chrono::milliseconds timeout, const std::function<bool()>& condition);

} // namespace corvane::test
