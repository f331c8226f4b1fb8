#pragma once

#include "Agents/ConfigEditError.h"

#include <optional>
#include <string>
#include <string_view>

/// Adds the hook to the text of Codex's configuration file and removes it. Pure functions of UTF-8 text.
///
/// The text is edited line by line and never parsed as TOML, so that every other byte stays; lines end in a
/// line feed, a carriage return before it is part of the line. What this cannot detect: a top-level `notify`
/// that is written as a quoted or dotted key, or that follows a line within a multi-line value that begins
/// with "[".
///
/// A leading byte-order mark belongs to no line: it stays first in the text, before added lines.
namespace corvane::CodexConfigEditor {

/// The comment line above the added line.
inline constexpr std::string_view comment =
    "# Corvane: tells Corvane when Codex finishes (remove in Corvane \xE2\x96\xB8 Settings)";

/// The first top-level `notify` line, unchanged, as a view into `text`; none when a table begins before one.
[[nodiscard]] std::optional<std::string_view> notifyLine(std::string_view text);

/// Whether the top-level `notify` line is the program's own, that is, contains `HookScript::marker`. `text`
/// is none when there is no file.
[[nodiscard]] bool isInstalled(std::optional<std::string_view> text);

/// `text` with the comment and the `notify` line, which runs `hookPath`, at its top; `text` itself when a
/// line is already installed, whatever its path. `hookPath` must not contain control characters, which TOML
/// forbids. Throws ConfigEditError::codexNotifyTaken when the line belongs to another program.
[[nodiscard]] std::string install(std::optional<std::string_view> text, std::string_view hookPath);

/// Whether `text` has a line that `uninstall` removes: one with the marker, wherever it is, or equal to the
/// comment.
[[nodiscard]] bool holdsOwnLines(std::string_view text);

/// `text` without any line that contains the marker, wherever it is, any line equal to the comment, and blank
/// lines at the top. Returns what `install` was given, unless that began with blank lines.
[[nodiscard]] std::string uninstall(std::string_view text);

} // namespace corvane::CodexConfigEditor
