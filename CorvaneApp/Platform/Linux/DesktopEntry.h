#pragma once

#include <string>
#include <string_view>

/// Reads and writes parts of desktop entry files, which define how a Linux desktop starts a program.
namespace corvane::DesktopEntry {

/// `argument` as one argument of an Exec line: in double quotes, with every character escaped that is special
/// in the line, in the quotes or in the file's own syntax. Control characters cannot be represented and are
/// left out.
[[nodiscard]] std::string execArgument(std::string_view argument);

/// The program that an entry's Exec line starts, unquoted and unescaped; empty when the entry has none.
[[nodiscard]] std::string execProgram(std::string_view entry);

/// Whether the entry must not be started: it is "Hidden", or switched off in a desktop's own settings.
[[nodiscard]] bool isDisabled(std::string_view entry);

} // namespace corvane::DesktopEntry
