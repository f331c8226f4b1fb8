#pragma once

#include "Sessions/SessionBoard.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// Which application a session's terminal is.
namespace corvane::TerminalApp {

/// From the value of a terminal's program variable to its application's bundle identifier. An empty
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

/// The bundle identifier that the session reported, else the one that its program stands for; none when
/// unknown.
[[nodiscard]] std::optional<std::string> bundleID(const AgentSession& session);

} // namespace corvane::TerminalApp
