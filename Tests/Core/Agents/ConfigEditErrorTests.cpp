#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ConfigEditError, isEqualWhenCaseSentenceAndTextAre) {
    EXPECT_EQ(ConfigEditError::unreadable("a"), ConfigEditError::unreadable("a"));
    EXPECT_NE(ConfigEditError::unreadable("a"), ConfigEditError::unreadable("b"));
    EXPECT_NE(ConfigEditError::unreadable("a"), ConfigEditError::codexNotifyTaken("a"));
    EXPECT_EQ(ConfigEditError::codexNotifyTaken("a").kind(), ConfigEditError::Case::taken);
    EXPECT_EQ(ConfigEditError::codexNotifyTaken("a").detail(), "a");
    EXPECT_NE(ConfigEditError::taken({"c", "%1"}, "a"), ConfigEditError::codexNotifyTaken("a"));
}

TEST(ConfigEditError, describesEveryCaseInSentences) {
    EXPECT_EQ(ConfigEditError::unreadable("settings.json is not valid JSON").description(),
              "settings.json is not valid JSON. Nothing was changed.");
    EXPECT_EQ(
        ConfigEditError::codexNotifyTaken("notify = [\"x\"]").description(),
        "Codex already sends notifications to another program (notify = [\"x\"]). Nothing was changed.");
}

std::string bracketed(const Phrase& phrase) {
    return "[" + std::string(phrase.key) + "]";
}

TEST(ConfigEditError, sentencesAndReasonsAreInTheWordsGivenAndLinesStay) {
    const ConfigEditError unreadable = ConfigEditError::unreadable("settings.json is not valid JSON");
    EXPECT_EQ(unreadable.detail(bracketed), "[settings.json is not valid JSON]");
    EXPECT_EQ(unreadable.description(bracketed), "[[settings.json is not valid JSON]. Nothing was changed.]");
    const ConfigEditError taken = ConfigEditError::codexNotifyTaken("notify");
    EXPECT_EQ(taken.detail(bracketed), "notify");
    EXPECT_EQ(taken.description(bracketed),
              "[Codex already sends notifications to another program (notify). Nothing was changed.]");
}

} // namespace
} // namespace corvane
