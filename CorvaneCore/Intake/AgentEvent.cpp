#include "Intake/AgentEvent.h"

#include "Agents/EventPayload.h"
#include "Support/Text.h"

#include <array>
#include <utility>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 5> claudeNames{"hook_event_name", "notification_type", "message",
                                                      "cwd", "session_id"};
constexpr std::array<std::string_view, 4> codexNames{"type", "cwd", "thread-id", "last-assistant-message"};

/// An event file taken apart; the views point into its text.
struct EventFile {
    std::optional<std::string_view> source;
    std::string_view term;
    std::string_view bundle;
    std::string_view header;  // everything up to and with the separator line
    std::string_view payload; // everything behind it, line ends included
};

/// Cuts the first line off `text`, without its line feed.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

void readHeaderLine(std::string_view line, EventFile& file) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view key = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    if (key == "source") file.source = value;
    if (key == "term") file.term = value;
    if (key == "bundle") file.bundle = value;
}

std::optional<EventFile> takeApart(std::string_view text) {
    EventFile file;
    std::string_view rest = text;
    if (text::trimmingSpacesAndTabs(takeLine(rest)) != AgentEvent::magic) return std::nullopt;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        if (line == AgentEvent::separator) {
            file.header = text.substr(0, text.size() - rest.size());
            file.payload = rest;
            return file;
        }
        readHeaderLine(line, file);
    }
    return std::nullopt;
}

std::optional<EventKind> notificationKind(const EventPayload& json, std::string_view message) {
    const std::optional<std::string> type = json.string("notification_type");
    if (type == "permission_prompt") return EventKind::needsPermission;
    if (type == "idle_prompt") return EventKind::needsInput;
    if (type) return std::nullopt;
    // Older versions of the agent tell the two apart in the message only.
    return text::containsIgnoringCase(message, "permission") ? EventKind::needsPermission
                                                             : EventKind::needsInput;
}

std::optional<EventKind> claudeKind(const EventPayload& json, std::string_view message) {
    const std::string name = json.string("hook_event_name").value_or("");
    if (name == "Notification") return notificationKind(json, message);
    if (name == "Stop") return EventKind::finished;
    if (name == "UserPromptSubmit" || name == "PostToolUse") return EventKind::running;
    if (name == "SessionEnd") return EventKind::ended;
    return std::nullopt;
}

} // namespace

std::string AgentEvent::repoName() const {
    return text::lastPathComponent(cwd);
}

std::optional<AgentEvent> AgentEvent::parse(std::string_view text, Date fileDate) {
    std::string padded;
    padded.reserve(text.size() + EventPayload::padding);
    padded.assign(text);
    padded.append(EventPayload::padding, '\0');
    EventPayload payload;
    return parse(std::string_view(padded).substr(0, text.size()), fileDate, payload);
}

std::optional<AgentEvent> AgentEvent::parse(std::string_view text, Date fileDate, EventPayload& payload) {
    const std::optional<EventFile> file = takeApart(text);
    if (!file || !file->source) return std::nullopt;
    const std::optional<AgentKind> source = AgentKind::fromRawValue(*file->source);
    if (!source || !text::isUtf8(file->header)) return std::nullopt;

    switch (*source) {
    case AgentKind::claude:
        if (!payload.read(file->payload, claudeNames)) return std::nullopt;
        return fromClaude(payload, file->term, file->bundle, fileDate);
    case AgentKind::codex:
        if (!payload.read(file->payload, codexNames)) return std::nullopt;
        return fromCodex(payload, file->term, file->bundle, fileDate);
    }
    return std::nullopt;
}

std::optional<AgentEvent> AgentEvent::fromClaude(const EventPayload& json, std::string_view term,
                                                 std::string_view bundle, Date date) {
    std::string message = json.string("message").value_or("");
    const std::optional<EventKind> kind = claudeKind(json, message);
    if (!kind) return std::nullopt;
    std::string cwd = json.string("cwd").value_or("");
    std::string sessionID = json.string("session_id").value_or(cwd);
    return AgentEvent{AgentKind::claude,    *kind,
                      std::move(sessionID), std::move(cwd),
                      std::move(message),   std::string(bundle),
                      std::string(term),    date};
}

std::optional<AgentEvent> AgentEvent::fromCodex(const EventPayload& json, std::string_view term,
                                                std::string_view bundle, Date date) {
    if (json.string("type") != "agent-turn-complete") return std::nullopt;
    std::string cwd = json.string("cwd").value_or("");
    std::string sessionID = json.string("thread-id").value_or(cwd);
    return AgentEvent{AgentKind::codex,
                      EventKind::finished,
                      std::move(sessionID),
                      std::move(cwd),
                      json.string("last-assistant-message").value_or(""),
                      std::string(bundle),
                      std::string(term),
                      date};
}

} // namespace corvane
