#pragma once

#include "Agents/AgentDescriptor.h"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace corvane {

/// The descriptors of the supported agents, each defined in the source file of its name.
namespace agents {
extern const AgentDescriptor claude;
extern const AgentDescriptor codex;
} // namespace agents

class AgentKind;

/// Agents in display order. A non-owning view: the list must outlive it.
using AgentKinds = std::span<const AgentKind>;

/// A supported coding agent: a reference to its descriptor, as small as a pointer. Two are equal when they
/// refer to the same descriptor.
class AgentKind {
  public:
    static const AgentKind claude;
    static const AgentKind codex;
    static const std::array<AgentKind, 2> allCases;

    /// `descriptor` must have static storage duration.
    constexpr explicit AgentKind(const AgentDescriptor& descriptor)
        : descriptor_(&descriptor) {}

    /// The agent of `agents` with exactly this raw value; none when there is no such agent.
    [[nodiscard]] static std::optional<AgentKind> fromRawValue(std::string_view raw,
                                                               AgentKinds agents = allCases);

    [[nodiscard]] const AgentDescriptor& descriptor() const { return *descriptor_; }
    [[nodiscard]] std::string_view rawValue() const { return descriptor_->rawValue; }
    [[nodiscard]] std::string_view displayName() const { return descriptor_->displayName; }

    bool operator==(const AgentKind&) const = default;

  private:
    friend struct std::hash<AgentKind>;

    const AgentDescriptor* descriptor_;
};

// The table of agents. Its size is part of its type and AgentKind has no default constructor, so a missing
// row does not compile; nor does a name for a row that does not exist.
inline constexpr std::array<AgentKind, 2> AgentKind::allCases{AgentKind(agents::claude),
                                                              AgentKind(agents::codex)};
inline constexpr AgentKind AgentKind::claude = std::get<0>(allCases);
inline constexpr AgentKind AgentKind::codex = std::get<1>(allCases);

inline std::optional<AgentKind> AgentKind::fromRawValue(std::string_view raw, AgentKinds agents) {
    for (const AgentKind kind : agents) {
        if (kind.rawValue() == raw) return kind;
    }
    return std::nullopt;
}

} // namespace corvane

template <>
struct std::hash<corvane::AgentKind> {
    std::size_t operator()(corvane::AgentKind kind) const noexcept {
        return std::hash<const corvane::AgentDescriptor*>()(kind.descriptor_);
    }
};
