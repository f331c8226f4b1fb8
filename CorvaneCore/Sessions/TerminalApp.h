#pragma once

#include "Sessions/SessionBoard.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// Identifies the application that a session's terminal belongs to.
namespace corvane::TerminalApp {

/// Maps the value of a terminal's TERM_PROGRAM variable to its application's bundle identifier. An empty
/// identifier names no application: a multiplexer runs inside some other terminal.
inline constexpr std::array<std::pair<std::string_view, std::string_view>, 7> byProgram{{
    {"Apple_Terminal", "com.apple.Terminal"},
    {"iTerm.app", "com.googlecode.iterm2"},
    {"ghostty", "com.mitchellh.ghostty"},
    {"WarpTerminal", "dev.warp.Warp-Stable"},
    {"vscode", "com.microsoft.VSCode"},
    {"WezTerm", "com.github.wez.wezterm"},
    {"tmux", ""},
}};

/// The bundle identifier that the session reported, else the one that its terminal program maps to; none when
/// unknown.
[[nodiscard]] std::optional<std::string> bundleID(const AgentSession& session);

} // namespace corvane::TerminalApp
