#include "Agents/AgentKind.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace corvane {
namespace {

TEST(AgentKind, hasItsCasesInDisplayOrderWithTheirNames) {
    std::vector<std::string> names;
    names.reserve(AgentKind::allCases.size());
    for (const AgentKind kind : AgentKind::allCases) {
        names.push_back(std::string(kind.rawValue()) + " " + std::string(kind.displayName()));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"claude Claude", "codex Codex"}));
}

TEST(AgentKind, isParsedFromItsRawValuesOnly) {
    EXPECT_EQ(AgentKind::fromRawValue("claude"), AgentKind::claude);
    EXPECT_EQ(AgentKind::fromRawValue("codex"), AgentKind::codex);
    for (const std::string_view other : {"", "Claude", "claude ", "codex\r", "gemini"}) {
        EXPECT_EQ(AgentKind::fromRawValue(other), std::nullopt) << other;
    }
}

TEST(AgentKind, servesAsAKey) {
    EXPECT_EQ(std::unordered_set<AgentKind>(AgentKind::allCases.begin(), AgentKind::allCases.end()).size(),
              2U);
}

} // namespace
} // namespace corvane
