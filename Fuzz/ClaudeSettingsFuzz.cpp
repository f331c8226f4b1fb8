// Any bytes as a Claude Code settings file, checked by an independent parser.

#include "Core/Agents/EditorProperties.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const corvane::test::Verdict fault = corvane::test::checkSettings(bytes)) {
        std::fprintf(stderr, "%s\n", fault->c_str());
        std::abort();
    }
    return 0;
}
