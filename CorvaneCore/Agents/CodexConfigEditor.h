#pragma once

#include "Agents/ConfigEditError.h"

#include <optional>
#include <string>
#include <string_view>

/// Adds the hook to the text of Codex's configuration file and takes it out again. Pure functions of UTF-8
/// text.
///
/// The text is edited line by line and never read as TOML, so that every other byte stays; lines end in a
/// line feed, a carriage return before it is part of the line. What that cannot see: a top-level `notify`
/// that is written as a quoted or dotted key, or that follows a line within a multi-line value that begins
/// with "[".
///
/// A leading byte-order mark belongs to no line: it stays the first thing in the text, before lines that are
/// added.
namespace corvane::CodexConfigEditor {

/// Stands above the line that is added.
inline constexpr std::string_view comment =
    "# Corvane: tells Corvane when Codex finishes (remove in Corvane \xE2\x96\xB8 Settings)";

/// The first top-level `notify` line as it stands, a part of `text`; none when a table begins before one.
[[nodiscard]] std::optional<std::string_view> notifyLine(std::string_view text);

/// Whether the top-level `notify` line is the program's own, which `HookScript::marker` shows. `text` is none
/// when there is no file.
[[nodiscard]] bool isInstalled(std::optional<std::string_view> text);

/// `text` with the comment and the `notify` line, which runs `hookPath`, at its top; `text` itself when it is
/// installed already, whatever the path. `hookPath` must not contain control characters, which TOML forbids.
/// Throws ConfigEditError::codexNotifyTaken when another program has the line.
[[nodiscard]] std::string install(std::optional<std::string_view> text, std::string_view hookPath);

/// Whether `text` has a line that `uninstall` is to remove: with the marker, wherever it stands, or equal to
/// the comment.
[[nodiscard]] bool holdsOwnLines(std::string_view text);

/// `text` without every line that holds the marker, wherever it stands, every line equal to the comment, and
/// blank lines at the top. Gives back what `install` was given, unless that began with blank lines.
[[nodiscard]] std::string uninstall(std::string_view text);

} // namespace corvane::CodexConfigEditor
