#include "Agents/AgentKind.h"
#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/EventPayload.h"
#include "Agents/HookScript.h"
#include "Support/Text.h"

#include <array>
#include <utility>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 5> payloadNames{"hook_event_name", "notification_type", "message",
                                                       "cwd", "session_id"};

std::optional<EventKind> notificationKind(const EventPayload& payload, std::string_view message) {
    const std::optional<std::string> type = payload.string("notification_type");
    if (type == "permission_prompt") return EventKind::needsPermission;
    if (type == "idle_prompt") return EventKind::needsInput;
    if (type) return std::nullopt;
    // Older versions of the agent distinguish the two only in the message.
    return text::containsIgnoringCase(message, "permission") ? EventKind::needsPermission
                                                             : EventKind::needsInput;
}

std::optional<EventKind> eventKind(const EventPayload& payload, std::string_view message) {
    const std::string name = payload.string("hook_event_name").value_or("");
    if (name == "Notification") return notificationKind(payload, message);
    if (name == "Stop") return EventKind::finished;
    if (name == "UserPromptSubmit" || name == "PostToolUse") return EventKind::running;
    if (name == "SessionEnd") return EventKind::ended;
    return std::nullopt;
}

std::optional<AgentReport> report(const EventPayload& payload) {
    std::string message = payload.string("message").value_or("");
    const std::optional<EventKind> kind = eventKind(payload, message);
    if (!kind) return std::nullopt;
    return AgentReport{*kind, payload.string("session_id"), payload.string("cwd").value_or(""),
                       std::move(message)};
}

std::string install(std::optional<std::string_view> settings, const CorvanePaths& paths) {
    return ClaudeSettingsEditor::install(settings, HookScript::command(AgentKind::claude, paths));
}

bool isInstalled(std::string_view settings) {
    return ClaudeSettingsEditor::isInstalled(settings);
}

} // namespace

// NOLINTNEXTLINE(cert-err58-cpp): a constant, which the compiler initialises.
constinit const AgentDescriptor agents::claude{
    .rawValue = "claude",
    .displayName = "Claude",
    .badge = "C",

    .payloadNames = payloadNames,
    .report = report,
    .minWorkForDoneAlert = Seconds(20),

    .configFile = ".claude/settings.json",
    .canHoldPath = text::isUtf8, // JSON is UTF-8 text
    .install = install,
    .uninstall = ClaudeSettingsEditor::uninstall,
    .isInstalled = isInstalled,

    .cardTitle = translatable("corvane::AgentCard", "Claude Code"),
    .cardOffer = translatable("corvane::AgentCard",
                              "Adds a small hook to %1. A backup is saved first; Remove puts it back."),
    .cardSummary = translatable(
        "corvane::AgentCard", "Alerts when Claude waits for approval, waits for your reply, or finishes. %1"),
    // Claude Code 2.1 watches the file.
    .cardRunningAgents =
        translatable("corvane::AgentCard", "Sessions that are already running report from now on."),
};

} // namespace corvane
