#include "Sessions/TerminalApp.h"

namespace corvane::TerminalApp {

std::optional<std::string> bundleID(const AgentSession& session) {
    if (!session.terminalBundleID.empty()) return session.terminalBundleID;
    for (const auto& [program, identifier] : byProgram) {
        if (program == session.terminalProgram && !identifier.empty()) return std::string(identifier);
    }
    return std::nullopt;
}

} // namespace corvane::TerminalApp
