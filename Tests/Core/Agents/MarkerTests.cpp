#include "Agents/ClaudeSettingsEditor.h"
#include "Agents/CodexConfigEditor.h"
#include "Agents/ConfigEditError.h"
#include "Support/Json.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

namespace corvane {
namespace {

/// Paths of other programs that resemble the marker of our own entries.
constexpr std::array<std::string_view, 7> nearMisses{
    "/opt/x/bin/corvane-hook",        "/opt/corvane/bin/corvane-hook", "/opt/CORVANE/BIN/CORVANE-HOOK",
    "/opt/Corvane/bin/corvane-hoo",   "/opt/Corvane/bin/Corvane-hook", "/opt/Corvane/corvane-hook",
    "/opt/Corvane//bin/corvane-hook",
};

/// Settings in which every event runs `program`.
std::string settingsThatRun(std::string_view program) {
    std::string events;
    for (const std::string_view event : ClaudeSettingsEditor::events) {
        events += (events.empty() ? "\"" : ",\"") + std::string(event) + R"(":[{"hooks":[{"command":")" +
                  std::string(program) + R"( claude","type":"command"}]}])";
    }
    return R"({"hooks":{)" + events + "}}";
}

TEST(ClaudeSettingsEditor, recognisesItsOwnEntriesByTheWholeMarkerOnly) {
    for (const std::string_view program : nearMisses) {
        const std::string before = settingsThatRun(program);
        EXPECT_FALSE(ClaudeSettingsEditor::isInstalled(before)) << program;
        const std::string installed =
            ClaudeSettingsEditor::install(before, "\"/h/Corvane/bin/corvane-hook\" claude");
        EXPECT_TRUE(ClaudeSettingsEditor::isInstalled(installed)) << program;
        EXPECT_EQ(ClaudeSettingsEditor::uninstall(before), before) << program;
        EXPECT_EQ(Json::parse(ClaudeSettingsEditor::uninstall(installed)), Json::parse(before)) << program;
        for (std::size_t at = 0, i = 0; i < ClaudeSettingsEditor::events.size(); ++i) {
            at = installed.find(std::string(program) + " claude", at);
            ASSERT_NE(at, std::string::npos) << program << " was lost from " << installed;
            ++at;
        }
    }
    EXPECT_TRUE(ClaudeSettingsEditor::isInstalled(settingsThatRun("/x/Corvane/bin/corvane-hook")));
}

TEST(CodexConfigEditor, recognisesItsOwnLineByTheWholeMarkerOnly) {
    for (const std::string_view program : nearMisses) {
        const std::string line = "notify = [\"" + std::string(program) + "\", \"codex\"]";
        const std::string text = line + "\na = 1\n";
        EXPECT_FALSE(CodexConfigEditor::isInstalled(text)) << program;
        EXPECT_EQ(CodexConfigEditor::uninstall(text), text);
        try {
            static_cast<void>(CodexConfigEditor::install(text, "/h/Corvane/bin/corvane-hook"));
            ADD_FAILURE() << "installed beside " << program;
        } catch (const ConfigEditError& error) {
            EXPECT_EQ(error, ConfigEditError::codexNotifyTaken(line));
        }
    }
}

} // namespace
} // namespace corvane
