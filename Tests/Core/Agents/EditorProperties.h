#pragma once

#include "Agents/AgentKind.h"
#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"
#include "Core/Agents/PlainJson.h"
#include "Support/Text.h"

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <toml++/toml.h>

/// Properties of the editors that must hold for any input. Each check returns what is wrong; none when the
/// property holds.
namespace corvane::test {

using Verdict = std::optional<std::string>;

inline Verdict checkUnreadableSettings(std::string_view bytes, std::string_view command) {
    const ConfigEditError expected = ConfigEditError::unreadable("settings.json is not valid JSON");
    try {
        static_cast<void>(ClaudeSettingsEditor::install(bytes, command));
        return "installed into what is no document";
    } catch (const ConfigEditError& error) {
        if (error != expected) return "another error on install";
    }
    try {
        static_cast<void>(ClaudeSettingsEditor::uninstall(bytes));
        return "uninstalled from what is no document";
    } catch (const ConfigEditError& error) {
        if (error != expected) return "another error on uninstall";
    }
    if (ClaudeSettingsEditor::isInstalled(bytes)) return "installed in what is no document";
    return std::nullopt;
}

inline Verdict checkSettings(std::string_view bytes) {
    const std::string command = "\"/h \xC3\xA9\\/Corvane/bin/corvane-hook\" claude";
    const std::optional<plain::Value> before = plain::settings(bytes);
    if (!before) return checkUnreadableSettings(bytes, command);

    const std::string installed = ClaudeSettingsEditor::install(bytes, command);
    const std::optional<plain::Value> after = plain::settings(installed);
    if (!after || !plain::equal(*after, plain::afterInstall(*before, command)))
        return "install: wrong document";
    if (plain::equal(*after, *before)) {
        if (installed != bytes) return "install: laid a document out anew without a change";
    } else if (!installed.ends_with("}\n") || installed.ends_with("\n\n")) {
        return "install: wrong end";
    }
    if (ClaudeSettingsEditor::install(installed, command) != installed)
        return "a second install changes something";
    if (!ClaudeSettingsEditor::isInstalled(installed)) return "not installed after install";

    const std::string removed = ClaudeSettingsEditor::uninstall(installed);
    const std::optional<plain::Value> rest = plain::settings(removed);
    const plain::Value expected = plain::afterUninstall(plain::afterInstall(*before, command));
    if (!rest || !plain::equal(*rest, expected)) return "install and uninstall: wrong document";
    if (ClaudeSettingsEditor::isInstalled(removed)) return "installed after uninstall";

    const std::string direct = ClaudeSettingsEditor::uninstall(bytes);
    const std::optional<plain::Value> left = plain::settings(direct);
    if (!left || !plain::equal(*left, plain::afterUninstall(*before))) return "uninstall: wrong document";
    if (!plain::holdsOwnEntries(*before) && direct != bytes)
        return "uninstall: laid a document without own entries out anew";
    if (ClaudeSettingsEditor::uninstall(direct) != direct) return "a second uninstall changes something";
    return std::nullopt;
}

inline std::optional<toml::table> parseToml(std::string_view text) {
    try {
        return toml::parse(text);
    } catch (const toml::parse_error&) {
        return std::nullopt;
    }
}

inline std::string written(const toml::table& table) {
    std::ostringstream stream;
    stream << table;
    return stream.str();
}

/// `isToml`: whether to check the result with the TOML parser too.
inline Verdict checkCodexConfig(std::string_view text, std::string_view hookPath, bool isToml) {
    const std::string marker = "Corvane/bin/corvane-hook";
    const std::optional<std::string_view> line = CodexConfigEditor::notifyLine(text);
    if (line && (line->data() < text.data() || line->data() + line->size() > text.data() + text.size())) {
        return "the notify line is no part of the text";
    }
    const bool own = line && line->find(marker) != std::string_view::npos;
    if (CodexConfigEditor::isInstalled(text) != own) return "isInstalled disagrees with the notify line";

    std::string installed;
    try {
        installed = CodexConfigEditor::install(text, hookPath);
        if (line && !own) return "installed over another program's line";
    } catch (const ConfigEditError& error) {
        if (!line || own) return "refused without another program's line";
        const std::size_t first = line->find_first_not_of(" \t");
        const std::size_t last = line->find_last_not_of(" \t");
        const std::string trimmed(line->substr(first, last - first + 1));
        return error == ConfigEditError::codexNotifyTaken(trimmed) ? Verdict() : "another payload";
    }
    if (!CodexConfigEditor::isInstalled(installed)) return "not installed after install";
    if (CodexConfigEditor::install(installed, hookPath) != installed)
        return "a second install changes something";
    const bool ownTraces = text.find(marker) != std::string_view::npos ||
                           text.find(CodexConfigEditor::comment) != std::string_view::npos;
    if (!ownTraces && corvane::text::isUtf8(text) && AgentKind::codex.descriptor().uninstall(text) != text) {
        return "uninstall changed a text without own lines";
    }
    const std::string removed = CodexConfigEditor::uninstall(installed);
    if (CodexConfigEditor::isInstalled(removed)) return "installed after uninstall";
    // Removing lines from the top may expose a byte-order mark, which is then no longer part of a line.
    const std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark) == removed.starts_with(mark) &&
        CodexConfigEditor::uninstall(removed) != removed) {
        return "a second uninstall changes something";
    }
    if (own) return installed == text ? Verdict() : "install changed an installed text";

    if (!installed.ends_with(text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text)) {
        return "install changed the old text";
    }
    const bool blankFirst = text.starts_with('\n') || text.starts_with("\xEF\xBB\xBF\n");
    if (!blankFirst && !ownTraces && removed != text)
        return "install and uninstall do not give the text back";

    std::optional<toml::table> before = isToml ? parseToml(text) : std::nullopt;
    if (!before || before->contains("notify")) return std::nullopt;
    const std::optional<toml::table> after = parseToml(installed);
    if (!after) return "the result is no TOML";
    before->insert("notify", toml::array{std::string(hookPath), "codex"});
    if (written(*before) != written(*after)) return "the result has other content";
    return std::nullopt;
}

} // namespace corvane::test
