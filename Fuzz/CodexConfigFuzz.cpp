// A hook path up to the first zero byte, then any text as a Codex configuration file.

#include "Core/Agents/EditorProperties.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(bytes.find('\0'), size);
    // The connector passes no path with a control character: it would end the line.
    std::string path;
    for (const char c : bytes.substr(0, end)) {
        if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) path += c;
    }
    path += "/Corvane/bin/corvane-hook";
    const std::string_view text = end < size ? bytes.substr(end + 1) : std::string_view();
    // Without the TOML parser, which aborts the program for some texts that are not TOML.
    if (const corvane::test::Verdict fault = corvane::test::checkCodexConfig(text, path, false)) {
        std::fprintf(stderr, "%s\n", fault->c_str());
        std::abort();
    }
    return 0;
}
