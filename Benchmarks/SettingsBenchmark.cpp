// Connecting and removing Claude Code on settings documents of increasing size, compared with merely reading
// and writing the same bytes.

#include "Agents/ClaudeSettingsEditor.h"
#include "Support/Files.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
namespace editor = corvane::ClaudeSettingsEditor;
namespace files = corvane::files;

constexpr std::string_view command =
    "\"/home/ada/Library/Application Support/Corvane/bin/corvane-hook\" claude";

/// A settings document of about `size` bytes: permissions, environment, numbers and hooks in equal shares.
std::string document(std::size_t size) {
    std::string text =
        R"({"model":"opus","hooks":{"Stop":[{"hooks":[{"command":"say done"}]}]},"projects":{)";
    for (std::size_t i = 0; text.size() < size; ++i) {
        if (i > 0) text += ',';
        const std::string n = std::to_string(i);
        text += "\"/home/ada/src/project-" + n +
                R"j(":{"allow":["Bash(git diff:*)","Read(./src/**)","\u00e9\n"],"cost":)j" + n +
                R"j(.0625,"env":{"TOKENS":")j" + n + R"j(","DEBUG":""},"trusted":true,"last":null})j";
    }
    return text + "}}\n";
}

void Install(benchmark::State& state) {
    const std::string before = document(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(editor::install(before, command));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(before.size()));
}

void Uninstall(benchmark::State& state) {
    const std::string before = editor::install(document(static_cast<std::size_t>(state.range(0))), command);
    for (auto _ : state)
        benchmark::DoNotOptimize(editor::uninstall(before));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(before.size()));
}

void IsInstalled(benchmark::State& state) {
    const std::string before = editor::install(document(static_cast<std::size_t>(state.range(0))), command);
    for (auto _ : state)
        benchmark::DoNotOptimize(editor::isInstalled(before));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(before.size()));
}

/// Reading the file and replacing it atomically, flush to the disk included.
void ReadAndWriteAlone(benchmark::State& state) {
    const std::string bytes = document(static_cast<std::size_t>(state.range(0)));
    std::string folder = (fs::temp_directory_path() / "corvane-benchmark-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        state.SkipWithError("no scratch folder");
        return;
    }
    const fs::path file = fs::path(folder) / "settings.json";
    files::writeAtomically(file, bytes);
    for (auto _ : state) {
        const files::FileContent content = files::read(file);
        files::writeAtomically(file, content.bytes);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    fs::remove_all(folder);
}

constexpr std::int64_t smallSize = 10L << 10;
constexpr std::int64_t middleSize = 1L << 20;
constexpr std::int64_t largeSize = 32L << 20;

BENCHMARK(Install)->Arg(smallSize)->Arg(middleSize)->Arg(largeSize)->Unit(benchmark::kMillisecond);
BENCHMARK(Uninstall)->Arg(smallSize)->Arg(middleSize)->Arg(largeSize)->Unit(benchmark::kMillisecond);
BENCHMARK(IsInstalled)->Arg(smallSize)->Arg(middleSize)->Arg(largeSize)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAndWriteAlone)->Arg(smallSize)->Arg(middleSize)->Arg(largeSize)->Unit(benchmark::kMillisecond);

} // namespace
