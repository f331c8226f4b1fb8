#pragma once

#include "NaiveBoard.h"
#include "Sessions/SessionBoard.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane::test {

/// The real board's records in the naive board's terms. The naive board counts time from `origin`, so that
/// its whole numbers reach a few centuries both ways.
constexpr std::int64_t origin = 1'790'000'000; // seconds since 1970

[[nodiscard]] Date date(Nanoseconds time);
[[nodiscard]] Nanoseconds nanoseconds(Date date);

[[nodiscard]] NaiveSession described(const AgentSession& session);
[[nodiscard]] std::vector<NaiveSession> described(const std::vector<AgentSession>& sessions);
[[nodiscard]] std::optional<NaiveEffect> described(const std::optional<BoardEffect>& effect);

} // namespace corvane::test
