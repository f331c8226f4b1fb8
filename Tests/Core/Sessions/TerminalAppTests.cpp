#include "Sessions/TerminalApp.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace corvane {
namespace {

AgentSession sessionIn(std::string program, std::string bundleID = {}) {
    AgentSession session;
    session.terminalProgram = std::move(program);
    session.terminalBundleID = std::move(bundleID);
    return session;
}

TEST(TerminalApp, knowsSevenPrograms) {
    EXPECT_EQ(TerminalApp::byProgram.size(), 7U);
    const std::pair<const char*, const char*> expected[] = {
        {"Apple_Terminal", "com.apple.Terminal"}, {"iTerm.app", "com.googlecode.iterm2"},
        {"ghostty", "com.mitchellh.ghostty"},     {"WarpTerminal", "dev.warp.Warp-Stable"},
        {"vscode", "com.microsoft.VSCode"},       {"WezTerm", "com.github.wez.wezterm"},
    };
    for (const auto& [program, bundleID] : expected) {
        EXPECT_EQ(TerminalApp::bundleID(sessionIn(program)), bundleID) << program;
    }
}

TEST(TerminalApp, theReportedIdentifierTakesPrecedenceEvenIfItIsInNoTable) {
    EXPECT_EQ(TerminalApp::bundleID(sessionIn("iTerm.app", "org.example.terminal")), "org.example.terminal");
    EXPECT_EQ(TerminalApp::bundleID(sessionIn("tmux", "org.example.terminal")), "org.example.terminal");
    EXPECT_EQ(TerminalApp::bundleID(sessionIn("", " ")), " ");
}

TEST(TerminalApp, aMultiplexerNamesNoApplication) {
    EXPECT_EQ(TerminalApp::bundleID(sessionIn("tmux")), std::nullopt);
}

TEST(TerminalApp, unknownAndEmptyProgramsNameNoApplication) {
    for (const char* program : {"", "xterm", "Iterm.app", "VSCODE", "ghostty ", "iTerm.app2"}) {
        EXPECT_EQ(TerminalApp::bundleID(sessionIn(program)), std::nullopt) << program;
    }
}

} // namespace
} // namespace corvane
