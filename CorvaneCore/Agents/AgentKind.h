#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

/// A supported coding agent. Used like an enumeration: `AgentKind::claude`, `switch (kind)`.
class AgentKind {
  public:
    enum Case : std::uint8_t { claude, codex };

    /// In display order.
    static constexpr std::array<Case, 2> allCases{claude, codex};

    // NOLINTNEXTLINE(google-explicit-constructor): stands for its cases everywhere.
    constexpr AgentKind(Case value)
        : value_(value) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr operator Case() const { return value_; }

    /// None unless `raw` is exactly a raw value.
    static constexpr std::optional<AgentKind> fromRawValue(std::string_view raw) {
        for (const AgentKind kind : allCases) {
            if (kind.rawValue() == raw) return kind;
        }
        return std::nullopt;
    }

    /// The name in files and identifiers: "claude", "codex".
    [[nodiscard]] constexpr std::string_view rawValue() const {
        return value_ == claude ? "claude" : "codex";
    }

    /// The name that users read: "Claude", "Codex".
    [[nodiscard]] constexpr std::string_view displayName() const {
        return value_ == claude ? "Claude" : "Codex";
    }

  private:
    Case value_;
};

} // namespace corvane

template <>
struct std::hash<corvane::AgentKind> {
    std::size_t operator()(corvane::AgentKind kind) const noexcept { return kind; }
};
