#pragma once

#include <string>
#include <string_view>

/// Texts of desktop entry files, which tell a Linux desktop how to start a program.
namespace corvane::DesktopEntry {

/// `argument` as one argument of an Exec line: in double quotes, with every character escaped that would be
/// special to the line, to the quotes or to the file's own syntax. Control characters have no spelling there
/// and are left out.
[[nodiscard]] std::string execArgument(std::string_view argument);

/// The program that an entry's Exec line starts, its quoting and escapes undone; empty when the entry has
/// none.
[[nodiscard]] std::string execProgram(std::string_view entry);

/// Whether the entry says that it is not to be started: "Hidden", or switched off in a desktop's own
/// settings.
[[nodiscard]] bool isDisabled(std::string_view entry);

} // namespace corvane::DesktopEntry
