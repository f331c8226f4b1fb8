// Event files: the parser must agree with a simple second implementation on another JSON parser, about whole
// files and about mere payloads.

#include "Core/Intake/ReferenceReader.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using corvane::AgentEvent;
using corvane::EventPayload;

constexpr std::array<std::string_view, 9> names{
    "hook_event_name", "notification_type",      "message",       "cwd", "session_id", "type",
    "thread-id",       "last-assistant-message", "input-messages"};

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "EventFuzz: %s\n", what);
    std::abort();
}

void checkPayload(std::string_view json) {
    const auto expected = corvane::test::referenceObject(json);
    std::string padded(json);
    padded.append(EventPayload::padding, '}'); // the worst padding: it looks like an end
    EventPayload payload;
    const bool readable = payload.read(std::string_view(padded).substr(0, json.size()), names);
    if (!expected) return;
    require(readable == expected->readable, "verdicts on the payload differ");
    for (const std::string_view name : names) {
        require(payload.string(name) == (readable ? expected->string(std::string(name)) : std::nullopt),
                "values differ");
        require(payload.firstString(name) ==
                    (readable ? expected->firstString(std::string(name)) : std::nullopt),
                "first elements differ");
    }
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void checkFile(std::string_view text) {
    const corvane::Date date(1'700'000'000, 123'456'789);
    const auto event = AgentEvent::parse(text, date);
    if (!corvane::text::isUtf8(text)) {
        require(!event, "a file that is not UTF-8 gives an event");
        return;
    }
    const auto expected = corvane::test::referenceEvent(text, date);
    // The second implementation does not fold case beyond ASCII.
    if (expected && isAscii(text)) require(event == *expected, "events differ");
    if (expected) require(event.has_value() == expected->has_value(), "only one of the two gives an event");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkPayload(text);
    checkFile(text);
    checkFile("corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n" + std::string(text));
    checkFile("corvane-event 1\nsource=codex\n---\n" + std::string(text));
    return 0;
}
