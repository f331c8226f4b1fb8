#pragma once

#include <chrono>
#include <functional>

namespace corvane::test {

/// Polls `condition` until it holds or `timeout` has passed; returns whether it held. The last look begins
/// after `timeout`: whoever is held up between two looks has not missed what came meanwhile.
bool waitUntil(std::chrono::milliseconds timeout, const std::function<bool()>& condition);

} // namespace corvane::test
