#pragma once

#include "Agents/AgentKind.h"
#include "Support/CorvanePaths.h"

#include <string>
#include <string_view>

/// The small shell program that the agents run: it drops one event file into the inbox.
namespace corvane::HookScript {

/// The whole program, without a line feed at its end.
extern const std::string_view contents;

/// The part of the program's path that identifies our own entries in an agent's configuration.
inline constexpr std::string_view marker = "Corvane/bin/corvane-hook";

/// Writes the program to `paths.hookScript()`, executable for everybody, and creates the inbox directory.
/// Replaces an earlier program atomically. Throws files::FileError.
void install(const CorvanePaths& paths);

/// Whether the program exists, has these contents and is executable. Never throws.
[[nodiscard]] bool isInstalled(const CorvanePaths& paths) noexcept;

/// The command line with which `agent` calls the program: its path in double quotes, a space, the raw value.
[[nodiscard]] std::string command(AgentKind agent, const CorvanePaths& paths);

} // namespace corvane::HookScript
