// Reading one payload compared with the library's mere validation of the same bytes.

#include "Agents/EventPayload.h"
#include "SamplePayload.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using corvane::EventPayload;
using Maker = std::string (*)(std::size_t);

constexpr std::array<std::string_view, 5> names{"hook_event_name", "notification_type", "message", "cwd",
                                                "session_id"};

void countBytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void readPayload(benchmark::State& state, Maker make) {
    std::string padded = make(static_cast<std::size_t>(state.range(0)));
    const std::size_t size = padded.size();
    padded.append(EventPayload::padding, '\0');
    EventPayload payload;
    for (auto _ : state) {
        if (!payload.read(std::string_view(padded).substr(0, size), names)) state.SkipWithError("not read");
        benchmark::DoNotOptimize(payload.string("session_id"));
    }
    countBytes(state, size);
}

/// Both stages of the library's document parser, which it needs to validate a document.
void validateByLibrary(benchmark::State& state, Maker make) {
    const simdjson::padded_string json(make(static_cast<std::size_t>(state.range(0))));
    simdjson::dom::parser parser;
    for (auto _ : state) {
        simdjson::dom::element document;
        if (parser.parse(json).get(document)) state.SkipWithError("not valid");
        benchmark::DoNotOptimize(document);
    }
    countBytes(state, json.size());
}

/// The library's first stage alone: UTF-8, control characters, positions of tokens.
void findTokensByLibrary(benchmark::State& state, Maker make) {
    const simdjson::padded_string json(make(static_cast<std::size_t>(state.range(0))));
    simdjson::ondemand::parser parser;
    for (auto _ : state) {
        simdjson::ondemand::document document;
        if (parser.iterate(json).get(document)) state.SkipWithError("not valid");
        benchmark::DoNotOptimize(document);
    }
    countBytes(state, json.size());
}

void acceptByStrictReader(benchmark::State& state, Maker make) {
    const std::string json = make(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        if (!nlohmann::json::accept(json)) state.SkipWithError("not valid");
    }
    countBytes(state, json.size());
}

using corvane::benchmarks::samplePayload;
using corvane::benchmarks::structuredPayload;

#define CORVANE_PAYLOAD_BENCHMARK(function, make)                                                            \
    BENCHMARK_CAPTURE(function, make, make)->Arg(4 << 10)->Arg(1 << 20)
CORVANE_PAYLOAD_BENCHMARK(readPayload, samplePayload);
CORVANE_PAYLOAD_BENCHMARK(validateByLibrary, samplePayload);
CORVANE_PAYLOAD_BENCHMARK(findTokensByLibrary, samplePayload);
CORVANE_PAYLOAD_BENCHMARK(acceptByStrictReader, samplePayload);
CORVANE_PAYLOAD_BENCHMARK(readPayload, structuredPayload);
CORVANE_PAYLOAD_BENCHMARK(validateByLibrary, structuredPayload);
CORVANE_PAYLOAD_BENCHMARK(findTokensByLibrary, structuredPayload);
CORVANE_PAYLOAD_BENCHMARK(acceptByStrictReader, structuredPayload);

} // namespace
