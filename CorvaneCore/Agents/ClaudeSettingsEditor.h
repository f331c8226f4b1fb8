#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// Adds the hook to the text of Claude Code's settings file and removes it. Pure functions of bytes.
///
/// Everything that the program did not put there keeps its meaning, numbers to the last digit and unpaired
/// surrogates as they were escaped; layout and key order follow the JSON writer. An entry is the program's
/// own when its `"command"` contains `HookScript::marker`. Of duplicate keys the last one counts, as Claude
/// Code reads it. A leading byte-order mark is ignored and not written back. Input that is empty or only
/// white space is an empty document.
///
/// A group whose `"hooks"` is not an array of objects counts as foreign, whatever it holds.
namespace corvane::ClaudeSettingsEditor {

/// The events that the hook is registered for, in the order in which they are processed.
inline constexpr std::array<std::string_view, 5> events{"Notification", "Stop", "UserPromptSubmit",
                                                        "PostToolUse", "SessionEnd"};
/// Those of `events` whose group carries an (empty) `"matcher"`.
inline constexpr std::array<std::string_view, 2> matcherEvents{"Notification", "PostToolUse"};

/// The new content of a file that holds `current` (none when there is no file): one group of the program's
/// own at the end of every event's list, replacing earlier ones. A group that holds an own entry is removed
/// whole, including any foreign entries in it. `"hooks"`, or an event's value under it, is replaced if it has
/// the wrong type. `command` is the UTF-8 text of `HookScript::command`. A document in which nothing has to
/// change is returned byte for byte; any other is reformatted and ends in one line feed. Throws
/// ConfigEditError::unreadable unless `current` is a JSON object.
[[nodiscard]] std::string install(std::optional<std::string_view> current, std::string_view command);

/// `current` without the program's own entries, under whatever event they are; groups, events and the
/// `"hooks"` object that are then empty are removed too, even if they were empty before. Foreign entries in a
/// group stay. A document without own entries is returned byte for byte; any other is reformatted. Throws
/// ConfigEditError::unreadable unless `current` is a JSON object.
[[nodiscard]] std::string uninstall(std::string_view current);

/// Whether every one of `events` has a group with an own entry. Never throws, whatever `current` holds.
[[nodiscard]] bool isInstalled(std::optional<std::string_view> current);

} // namespace corvane::ClaudeSettingsEditor
