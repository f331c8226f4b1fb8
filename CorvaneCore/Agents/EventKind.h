#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// What an agent's event reports.
enum class EventKind : std::uint8_t {
    needsPermission, ///< blocked on a permission prompt
    needsInput,      ///< waits for the user's reply
    finished,        ///< finished its turn
    running,         ///< works again: the user submitted a prompt, or a tool finished
    ended,           ///< the agent's session ended
};

inline constexpr std::array eventKinds{EventKind::needsPermission, EventKind::needsInput, EventKind::finished,
                                       EventKind::running, EventKind::ended};

/// The enumerator's own name.
[[nodiscard]] constexpr std::string_view rawValue(EventKind kind) {
    constexpr auto names =
        std::to_array<std::string_view>({"needsPermission", "needsInput", "finished", "running", "ended"});
    static_assert(names.size() == eventKinds.size());
    return names[static_cast<std::size_t>(kind)];
}

/// None unless `raw` is exactly a raw value.
[[nodiscard]] constexpr std::optional<EventKind> eventKindFromRawValue(std::string_view raw) {
    for (const EventKind kind : eventKinds) {
        if (rawValue(kind) == raw) return kind;
    }
    return std::nullopt;
}

} // namespace corvane
