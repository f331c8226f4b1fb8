#include "Agents/CodexConfigEditor.h"

#include "Agents/HookScript.h"
#include "Support/Text.h"

#include <utility>

namespace corvane::CodexConfigEditor {

namespace {

/// The leading byte-order mark of `text`, if any, and the rest.
std::pair<std::string_view, std::string_view> splitByteOrderMark(std::string_view text) {
    const std::size_t size = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    return {text.substr(0, size), text.substr(size)};
}

/// Removes the first line from `rest` and returns it without its line feed; none at the end. Text that ends
/// in a line feed ends in an empty line.
std::optional<std::string_view> takeLine(std::optional<std::string_view>& rest) {
    if (!rest) return std::nullopt;
    const std::size_t end = rest->find('\n');
    const std::string_view line = rest->substr(0, end);
    if (end == std::string_view::npos) {
        rest.reset();
    } else {
        rest->remove_prefix(end + 1);
    }
    return line;
}

bool containsMarker(std::string_view line) {
    return line.find(HookScript::marker) != std::string_view::npos;
}

bool isOwn(std::string_view line) {
    return containsMarker(line) || line == comment;
}

std::string ownLine(std::string_view hookPath) {
    std::string line = "notify = [\"";
    for (const char c : hookPath) {
        if (c == '\\' || c == '"') line += '\\';
        line += c;
    }
    line += R"(", "codex"])";
    return line;
}

} // namespace

std::optional<std::string_view> notifyLine(std::string_view text) {
    constexpr std::string_view key = "notify";
    std::optional<std::string_view> rest = splitByteOrderMark(text).second;
    while (const std::optional<std::string_view> line = takeLine(rest)) {
        const std::string_view trimmed = text::trimmingSpacesAndTabs(*line);
        if (trimmed.starts_with('[')) return std::nullopt;
        if (trimmed.starts_with(key) &&
            text::trimmingSpacesAndTabs(trimmed.substr(key.size())).starts_with('=')) {
            return line;
        }
    }
    return std::nullopt;
}

bool isInstalled(std::optional<std::string_view> text) {
    const std::optional<std::string_view> line = text ? notifyLine(*text) : std::nullopt;
    return line && containsMarker(*line);
}

std::string install(std::optional<std::string_view> text, std::string_view hookPath) {
    const std::string_view existing = text.value_or("");
    if (const std::optional<std::string_view> line = notifyLine(existing)) {
        if (containsMarker(*line)) return std::string(existing);
        throw ConfigEditError::codexNotifyTaken(std::string(text::trimmingSpacesAndTabs(*line)));
    }
    const auto [mark, rest] = splitByteOrderMark(existing);
    std::string result(mark);
    result += comment;
    result += '\n';
    result += ownLine(hookPath);
    result += '\n';
    if (!rest.empty()) {
        result += '\n';
        result += rest;
    }
    return result;
}

bool holdsOwnLines(std::string_view text) {
    std::optional<std::string_view> rest = splitByteOrderMark(text).second;
    while (const std::optional<std::string_view> line = takeLine(rest)) {
        if (isOwn(*line)) return true;
    }
    return false;
}

std::string uninstall(std::string_view text) {
    const auto [mark, body] = splitByteOrderMark(text);
    std::string kept;
    std::optional<std::string_view> rest = body;
    while (const std::optional<std::string_view> line = takeLine(rest)) {
        if (!isOwn(*line)) kept.append(1, '\n').append(*line);
    }
    // Removes the line feed before the first line, and empty lines at the top. Text of nothing but line feeds
    // becomes empty.
    const std::size_t begin = kept.find_first_not_of('\n');
    return std::string(mark) + (begin == std::string::npos ? std::string() : kept.substr(begin));
}

} // namespace corvane::CodexConfigEditor

namespace corvane {

// Defined here, since the sentence is specific to this agent.
ConfigEditError ConfigEditError::codexNotifyTaken(std::string line) {
    return taken(
        translatable("corvane::ConfigEditError",
                     "Codex already sends notifications to another program (%1). Nothing was changed."),
        std::move(line));
}

} // namespace corvane
