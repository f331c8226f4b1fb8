#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// Adds the hook to the text of Claude Code's settings file and takes it out again. Pure functions of bytes.
///
/// Everything that the program did not put there keeps its meaning, numbers to the last digit and halves of
/// surrogate pairs as they were escaped; layout and the order of keys follow the JSON writer. An entry is the
/// program's own when its `"command"` contains `HookScript::marker`. Of a key that stands twice the last one
/// counts, as Claude Code reads it. A leading byte-order mark is read as if it were absent and not written.
/// Bytes that are empty or only white space are an empty document.
///
/// A group whose `"hooks"` is not an array of objects is foreign, whatever it holds.
namespace corvane::ClaudeSettingsEditor {

/// The events that the hook is registered for, in the order in which they are looked at.
inline constexpr std::array<std::string_view, 5> events{"Notification", "Stop", "UserPromptSubmit",
                                                        "PostToolUse", "SessionEnd"};
/// Those of `events` whose group carries an (empty) `"matcher"`.
inline constexpr std::array<std::string_view, 2> matcherEvents{"Notification", "PostToolUse"};

/// The new content of a file that holds `current` (none when there is no file): one group of the program's
/// own at the end of every event's list, in the place of earlier ones. A group that holds an own entry goes
/// whole, foreign entries in it included. `"hooks"`, or an event's value under it, of the wrong type is
/// replaced. `command` is the UTF-8 text of `HookScript::command`. A document in which all of that is so
/// already comes back byte for byte; any other is laid out anew and ends in one line feed. Throws
/// ConfigEditError::unreadable unless `current` is a JSON object.
[[nodiscard]] std::string install(std::optional<std::string_view> current, std::string_view command);

/// `current` without the program's own entries, under whatever event they stand; groups, events and the
/// `"hooks"` object that are empty then go too, also those that were empty before. Foreign entries of a group
/// stay. A document without own entries comes back byte for byte; any other is laid out anew. Throws
/// ConfigEditError::unreadable unless `current` is a JSON object.
[[nodiscard]] std::string uninstall(std::string_view current);

/// Whether every one of `events` has a group with an own entry. Never throws for what `current` holds.
[[nodiscard]] bool isInstalled(std::optional<std::string_view> current);

} // namespace corvane::ClaudeSettingsEditor
