// The session board with lists from the usual handful to far longer ones.

#include "Sessions/SessionBoard.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

namespace corvane {
namespace {

constexpr Date start(1'790'000'000, 0);

// Like the agents' own identifiers: too long for the small-string optimisation.
std::string sessionID(std::int64_t index) {
    std::string digits = std::to_string(index);
    digits.insert(0, 12 - digits.size(), '0');
    return "5f0c1c52-9d7e-4b1a-8c3e-" + digits;
}

AgentEvent makeEvent(EventKind kind, std::int64_t session, double seconds) {
    AgentEvent event;
    event.source = session % 2 == 0 ? AgentKind::claude : AgentKind::codex;
    event.kind = kind;
    event.sessionID = sessionID(session);
    event.cwd = "/home/someone/projects/shop-" + std::to_string(session);
    event.message = "Claude needs your permission to use Bash";
    event.terminalProgram = "Apple_Terminal";
    event.date = start + Seconds(seconds);
    return event;
}

// A third each is waiting, running and done.
SessionBoard makeBoard(std::int64_t sessions) {
    constexpr EventKind kinds[] = {EventKind::needsPermission, EventKind::running, EventKind::finished};
    SessionBoard board;
    for (std::int64_t i = 0; i < sessions; ++i) {
        board.apply(makeEvent(kinds[i % 3], i, static_cast<double>(i * 7 % 100)));
    }
    return board;
}

// The minimum for any look-up in such a list: a scan over the same identifiers, stored contiguously.
void plainScan(benchmark::State& state) {
    std::vector<std::string> ids;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        ids.push_back(sessionID(i));
    const std::string last = ids.back();
    for (auto _ : state)
        benchmark::DoNotOptimize(std::find(ids.begin(), ids.end(), last));
}

// A tool of the last session in the list has finished, the most frequent report.
void applyRunning(benchmark::State& state) {
    SessionBoard board = makeBoard(state.range(0));
    const AgentEvent event = makeEvent(EventKind::running, state.range(0) - 1, 200);
    for (auto _ : state)
        benchmark::DoNotOptimize(board.apply(event));
}

// A prompt, whose effect carries a copy of the session.
void applyPrompt(benchmark::State& state) {
    SessionBoard board = makeBoard(state.range(0));
    const AgentEvent event = makeEvent(EventKind::needsPermission, state.range(0) - 1, 200);
    for (auto _ : state)
        benchmark::DoNotOptimize(board.apply(event));
}

// The query that runs every second, with nothing due.
void dueRemindersOfNone(benchmark::State& state) {
    SessionBoard board = makeBoard(state.range(0));
    const Date now = start + Seconds(100);
    for (auto _ : state)
        benchmark::DoNotOptimize(board.dueReminders(now, Seconds(120)));
}

// The same with every waiting session due.
void dueRemindersOfAll(benchmark::State& state) {
    SessionBoard board = makeBoard(state.range(0));
    Date now = start;
    for (auto _ : state) {
        now = now + Seconds(120);
        benchmark::DoNotOptimize(board.dueReminders(now, Seconds(120)));
    }
}

// A plain copy of the list, for comparison with `sorted`.
void plainCopy(benchmark::State& state) {
    const SessionBoard board = makeBoard(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(std::vector<AgentSession>(board.sessions()));
}

void sorted(benchmark::State& state) {
    const SessionBoard board = makeBoard(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(board.sorted());
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10)->Arg(100)->Arg(1'000);
}

BENCHMARK(plainScan)->Apply(sizes);
BENCHMARK(applyRunning)->Apply(sizes);
BENCHMARK(applyPrompt)->Apply(sizes);
BENCHMARK(dueRemindersOfNone)->Apply(sizes);
BENCHMARK(dueRemindersOfAll)->Apply(sizes);
BENCHMARK(plainCopy)->Apply(sizes);
BENCHMARK(sorted)->Apply(sizes);

} // namespace
} // namespace corvane
