#pragma once

#include <cstddef>
#include <string>

namespace corvane::benchmarks {

/// A "PostToolUse" payload of about `size` bytes: a tool's output, source code escaped in JSON, some 40
/// characters per line, a few of them beyond ASCII.
inline std::string samplePayload(std::size_t size) {
    const std::string head =
        R"({"session_id":"3b0c8a52-5d4b-4e0f-8d53-0f3f6f3f1d55","transcript_path":"/home/you/.claude/projects/-w-shop/)"
        R"(3b0c8a52.jsonl","cwd":"/home/you/w/shop","prompt_id":"5f1c0d9e","permission_mode":"default",)"
        R"("hook_event_name":"PostToolUse","tool_name":"Bash","tool_input":{"command":"git diff","timeout":120000},)"
        R"("tool_response":{"stdout":")";
    const std::string lines = R"(    if (order.total() > limit) {\n)"
                              R"(\t\tstd::cout << \"limit: \" << limit << '\\n';\n)"
                              R"(    const auto found = stock.find(order.item());\n)"
                              R"(    // Größe und Preis – wie im Katalog\n)"
                              R"(    return found == stock.end() ? 0 : found->second;\n)"
                              R"(+++ b/src/checkout/order_limits.cpp\n)";
    const std::string tail =
        R"(","stderr":"","interrupted":false,"isImage":false},"tool_use_id":"toolu_01","duration_ms":41})"
        "\n";
    std::string payload = head;
    while (payload.size() + lines.size() + tail.size() < size)
        payload += lines;
    return payload + tail;
}

/// A payload of about `size` bytes made of many short members and numbers rather than one long text.
inline std::string structuredPayload(std::size_t size) {
    std::string payload = R"({"hook_event_name":"PostToolUse","session_id":"s","cwd":"/w","tool_response":[)";
    for (std::size_t line = 1; payload.size() + 64 < size; ++line) {
        payload += R"({"line":)" + std::to_string(line) + R"(,"kind":"match","score":0.75,"hit":true},)";
    }
    payload.back() = ']';
    return payload + "}\n";
}

} // namespace corvane::benchmarks
