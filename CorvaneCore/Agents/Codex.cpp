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

constexpr std::array<std::string_view, 5> payloadNames{"type", "cwd", "thread-id", "last-assistant-message",
                                                       "input-messages"};

/// Whether a turn belongs to the hidden thread in which Codex 0.169's terminal interface lets a model title
/// the task: it notifies for that too, about a second after the prompt, while the agent is still working on
/// it. Such a thread is recognisable only by its single input, fixed instructions with the user's prompt in
/// the last paragraph. A user's own prompt that merely contains these words does not count.
bool isTitleTurn(const EventPayload& payload) {
    constexpr std::string_view instructions = "Generate a concise, single-line task title";
    constexpr std::string_view lastParagraph = "\n\nUser prompt:\n";
    const std::optional<std::string> input = payload.firstString("input-messages");
    return input && input->starts_with(instructions) && input->find(lastParagraph) != std::string::npos;
}

std::optional<AgentReport> report(const EventPayload& payload) {
    if (payload.string("type") != "agent-turn-complete") return std::nullopt;
    if (isTitleTurn(payload)) return std::nullopt;
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
    // A file without our lines keeps the blank lines at its top.
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
    // Codex 0.169 reads the file whenever a conversation begins.
    .cardRunningAgents =
        translatable("corvane::AgentCard", "Conversations that are already open don't report; new ones do."),
};

} // namespace corvane
