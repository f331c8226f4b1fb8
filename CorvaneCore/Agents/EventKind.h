#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

/// What an agent's event says. Used like an enumeration: `EventKind::finished`, `switch (kind)`.
class EventKind {
  public:
    enum Case : std::uint8_t {
        needsPermission, ///< blocked on a permission prompt
        needsInput,      ///< waits for the user's reply
        finished,        ///< finished its turn
        running,         ///< works again: the user submitted a prompt, or a tool finished
        ended,           ///< the agent's session ended
    };

    static constexpr std::array<Case, 5> allCases{needsPermission, needsInput, finished, running, ended};

    // NOLINTNEXTLINE(google-explicit-constructor): stands for its cases everywhere.
    constexpr EventKind(Case value)
        : value_(value) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr operator Case() const { return value_; }

    /// None unless `raw` is exactly a raw value.
    static constexpr std::optional<EventKind> fromRawValue(std::string_view raw) {
        for (const EventKind kind : allCases) {
            if (kind.rawValue() == raw) return kind;
        }
        return std::nullopt;
    }

    /// The case's own name.
    [[nodiscard]] constexpr std::string_view rawValue() const {
        constexpr std::array<std::string_view, 5> names{"needsPermission", "needsInput", "finished",
                                                        "running", "ended"};
        return names[value_];
    }

  private:
    Case value_;
};

} // namespace corvane

template <>
struct std::hash<corvane::EventKind> {
    std::size_t operator()(corvane::EventKind kind) const noexcept { return kind; }
};
