#pragma once

namespace corvane::test {

/// How long a test waits for what happens soon, in milliseconds: far above any delay on a busy machine.
constexpr int longestWait = 30'000;

} // namespace corvane::test
