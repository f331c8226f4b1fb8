#include "Agents/AgentKind.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"
#include "Agents/EventPayload.h"
#include "Support/CorvanePaths.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 4> payloadNames{"type", "cwd", "thread-id", "last-assistant-message"};

std::optional<AgentReport> report(const EventPayload& payload) {
    if (payload.string("type") != "agent-turn-complete") return std::nullopt;
    return AgentReport{EventKind::finished, payload.string("thread-id"), payload.string("cwd").value_or(""),
                       payload.string("last-assistant-message").value_or("")};
}

// TOML is UTF-8 text, and its strings end at a control character.
bool canHoldPath(std::string_view path) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    return text::isUtf8(path) && std::none_of(path.begin(), path.end(), isControl);
}

void requireUtf8(std::string_view config) {
    if (!text::isUtf8(config)) {
        throw ConfigEditError::unreadable(
            translatable("corvane::ConfigEditError", "config.toml is not UTF-8 text").key);
    }
}

std::string install(std::optional<std::string_view> config, const CorvanePaths& paths) {
    if (config) requireUtf8(*config);
    return CodexConfigEditor::install(config, paths.hookScript().string());
}

std::string uninstall(std::string_view config) {
    requireUtf8(config);
    // Blank lines at the top of a file that is not ours are no business of ours.
    return CodexConfigEditor::holdsOwnLines(config) ? CodexConfigEditor::uninstall(config)
                                                    : std::string(config);
}

bool isInstalled(std::string_view config) {
    return text::isUtf8(config) && CodexConfigEditor::isInstalled(config);
}

} // namespace

// NOLINTNEXTLINE(cert-err58-cpp): a constant, which the compiler initialises.
constinit const AgentDescriptor agents::codex{
    .rawValue = "codex",
    .displayName = "Codex",
    .badge = "X",

    .payloadNames = payloadNames,
    .report = report,
    .minWorkForDoneAlert = std::nullopt,

    .configFile = ".codex/config.toml",
    .canHoldPath = canHoldPath,
    .install = install,
    .uninstall = uninstall,
    .isInstalled = isInstalled,

    .cardTitle = translatable("corvane::AgentCard", "Codex"),
    .cardOffer =
        translatable("corvane::AgentCard",
                     "Adds one notify line to %1. Codex only reports when it finishes, not approvals."),
    .cardSummary = translatable("corvane::AgentCard", "Alerts when Codex finishes a turn. %1"),
};

} // namespace corvane
