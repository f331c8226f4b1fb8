#include "Agents/EventKind.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace corvane {
namespace {

TEST(EventKind, hasItsCasesInOrderUnderTheirOwnNames) {
    std::vector<std::string> names;
    names.reserve(eventKinds.size());
    for (const EventKind kind : eventKinds)
        names.emplace_back(rawValue(kind));
    EXPECT_EQ(names,
              (std::vector<std::string>{"needsPermission", "needsInput", "finished", "running", "ended"}));
}

TEST(EventKind, isParsedFromItsRawValuesOnly) {
    for (const EventKind kind : eventKinds)
        EXPECT_EQ(eventKindFromRawValue(rawValue(kind)), kind);
    EXPECT_EQ(eventKindFromRawValue("Finished"), std::nullopt);
    EXPECT_EQ(eventKindFromRawValue(""), std::nullopt);
}

TEST(EventKind, servesAsAKey) {
    EXPECT_EQ(std::unordered_set<EventKind>(eventKinds.begin(), eventKinds.end()).size(), 5U);
}

} // namespace
} // namespace corvane
