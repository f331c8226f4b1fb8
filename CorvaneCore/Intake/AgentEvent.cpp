#include "Intake/AgentEvent.h"

#include "Agents/EventPayload.h"
#include "Support/Text.h"

#include <functional>
#include <utility>

namespace corvane {

namespace {

/// The parts of an event file; the views point into its text.
struct EventFile {
    std::optional<std::string_view> source;
    std::string_view term;
    std::string_view bundle;
    std::string_view header;  // everything up to and including the separator line
    std::string_view payload; // everything after it, line ends included
};

/// Removes the first line from `text` and returns it without its line feed.
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

constexpr std::string_view ellipsis = "\u2026";

std::string cutFolder(std::string_view folder) {
    // Trailing slashes are not part of any name.
    if (const std::size_t last = folder.find_last_not_of('/'); last != std::string_view::npos)
        folder = folder.substr(0, last + 1);
    if (folder.size() <= AgentEvent::longestName) return std::string(folder);
    return std::string(ellipsis).append(text::end(folder, AgentEvent::longestName));
}

std::string cutIdentifier(std::string_view identifier) {
    const std::size_t digest = std::hash<std::string_view>()(identifier);
    return std::string(text::beginning(identifier, AgentEvent::longestName))
        .append(ellipsis)
        .append(std::to_string(digest));
}

} // namespace

std::string AgentEvent::repoName() const {
    return text::lastPathComponent(cwd);
}

void AgentEvent::cutNames() {
    // An assignment might keep the old allocation.
    if (cwd.size() > longestName) cutFolder(cwd).swap(cwd);
    if (sessionID.size() > longestName) cutIdentifier(sessionID).swap(sessionID);
    for (std::string* const name : {&terminalBundleID, &terminalProgram}) {
        if (name->size() > longestName) std::string(text::beginning(*name, longestName)).swap(*name);
    }
}

std::optional<AgentEvent> AgentEvent::parse(std::string_view text, Date fileDate, AgentKinds agents) {
    std::string padded;
    padded.reserve(text.size() + EventPayload::padding);
    padded.assign(text);
    padded.append(EventPayload::padding, '\0');
    EventPayload payload;
    return parse(std::string_view(padded).substr(0, text.size()), fileDate, payload, agents);
}

std::optional<AgentEvent> AgentEvent::parse(std::string_view text, Date fileDate, EventPayload& payload,
                                            AgentKinds agents) {
    const std::optional<EventFile> file = takeApart(text);
    if (!file || !file->source) return std::nullopt;
    const std::optional<AgentKind> source = AgentKind::fromRawValue(*file->source, agents);
    if (!source || !text::isUtf8(file->header)) return std::nullopt;

    const AgentDescriptor& agent = source->descriptor();
    if (!payload.read(file->payload, agent.payloadNames)) return std::nullopt;
    std::optional<AgentReport> report = agent.report(payload);
    if (!report) return std::nullopt;
    std::string sessionID = std::move(report->sessionID).value_or(report->cwd);
    return AgentEvent{*source,
                      report->kind,
                      std::move(sessionID),
                      std::move(report->cwd),
                      std::move(report->message),
                      std::string(file->bundle),
                      std::string(file->term),
                      fileDate};
}

} // namespace corvane
