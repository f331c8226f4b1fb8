#include "Agents/HookScript.h"

#include "Support/Files.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::HookScript {

// Agents wait for their hooks: whatever goes wrong, the program ends quietly and with status 0. The inbox
// reads final names only, so a file stays invisible until the move, and a move within one folder is atomic.
const std::string_view contents =
    R"hook(#!/bin/sh
# Writes one event of a coding agent for Corvane, which shows it as a banner.
# To remove it, open Corvane: Settings ▸ Agents ▸ Remove. This script sends nothing over the network.
dir="$HOME/Library/Application Support/Corvane/events"
mkdir -p "$dir" 2>/dev/null || exit 0
source="${1:-claude}"
tmp="$dir/.$$.$(date +%s).tmp"
{
  printf 'corvane-event 1\n'
  printf 'source=%s\n' "$source"
  printf 'term=%s\n' "$(printf '%s' "${TERM_PROGRAM:-}" | tr -d '\n')"
  printf 'bundle=%s\n' "$(printf '%s' "${__CFBundleIdentifier:-}" | tr -d '\n')"
  printf -- '---\n'
  if [ "$source" = "codex" ]; then
    for last in "$@"; do :; done
    printf '%s\n' "$last"
  else
    cat
  fi
} > "$tmp" 2>/dev/null && mv "$tmp" "$dir/$(date +%s)-$$.event" 2>/dev/null
exit 0)hook";

void install(const CorvanePaths& paths) {
    const std::filesystem::path program = paths.hookScript();
    files::createDirectories(program.parent_path());
    files::createDirectories(paths.events());
    files::writeAtomically(program, contents);

    if (chmod(program.c_str(), 0755) != 0) {
        throw files::FileError(files::FileError::Operation::write, program, errno);
    }
}

bool isInstalled(const CorvanePaths& paths) noexcept {
    try {
        const std::filesystem::path program = paths.hookScript();
        return files::read(program).bytes == contents && access(program.c_str(), X_OK) == 0;
    } catch (...) {
        return false;
    }
}

std::string command(AgentKind agent, const CorvanePaths& paths) {
    return '"' + paths.hookScript().string() + "\" " + std::string(agent.rawValue());
}

} // namespace corvane::HookScript
