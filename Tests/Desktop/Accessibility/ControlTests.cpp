// What assistive technology finds for every element of every window: role, name, description and state,
// compared with the tables in Controls.

#include "Connection/AgentConnector.h"
#include "Desktop/Accessibility/AssistiveDesktop.h"
#include "Support/Date.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr const char* connectClaude = "focus\tpush button\tConnect\tClaude Code";
constexpr const char* connectCodex = "focus\tpush button\tConnect\tCodex";

// Clocks, the version and the home differ.
std::string steady(std::string line, const fs::path& home) {
    const std::size_t place = line.find(home.string());
    if (place != std::string::npos) line.replace(place, home.string().size(), "HOME");
    // Numbers with a colon or a point in them. (GCC 12 reports std::regex as faulty under the sanitizers.)
    constexpr const char* digits = "0123456789";
    std::string result;
    std::size_t at = 0;
    while (at < line.size()) {
        const std::size_t length = std::min(line.find_first_not_of("0123456789:.", at), line.size()) - at;
        std::string part = line.substr(at, std::max<std::size_t>(length, 1));
        at += part.size();
        const std::size_t separator = part.find_first_of(":.");
        const bool isCompound =
            length > 0 && part.find_first_of(digits) < separator &&
            part.find_first_of(digits, std::min(separator, part.size())) != std::string::npos;
        if (isCompound) {
            const std::size_t last = part.find_last_of(digits);
            part.replace(0, last + 1, "#");
        }
        result += part;
    }
    return result;
}

/// Elements that need a name for the user.
bool needsName(const std::string& role, const std::string& states) {
    constexpr std::array roles{"push button", "check box",     "combo box", "menu item",    "page tab",
                               "frame",       "page tab list", "image",     "notification", "text"};
    return std::find(roles.begin(), roles.end(), role) != roles.end() ||
           states.find("focusable") != std::string::npos;
}

class Controls : public testing::Test {
  protected:
    void SetUp() override { desktop.startBus(); }

    void startInFirstRun() {
        writeFile(session().home() / ".config/Corvane/Corvane.conf", "");
        start();
        ASSERT_TRUE(desktop.hasKeyboard(1));
    }

    void start() {
        session().startApplication();
        desktop.startFollower();
    }

    /// Expects the elements to become those of the table. If they do not, the last ones are saved in the
    /// build folder.
    void expectTable(const std::string& name, const std::function<Lines()>& elements) {
        const auto expected = fileBytes(fs::path(CORVANE_CONTROL_TABLES) / (name + ".txt"));
        Lines lines;
        std::string found;
        // The application may still be about to show what the last key has asked for.
        const bool isSame = waitUntil(std::chrono::seconds(5), [&] {
            lines = elements();
            found.clear();
            for (const std::string& line : lines)
                found += steady(line, session().home()) + '\n';
            return found == expected;
        });
        for (const std::string& line : lines) {
            Lines fields;
            std::istringstream stream(line);
            for (std::string field; std::getline(stream, field, '\t');)
                fields.push_back(field);
            fields.resize(5);
            if (needsName(fields[1], fields[4])) {
                EXPECT_FALSE(fields[2].empty()) << "a nameless " << fields[1] << " in " << name;
            }
        }
        if (isSame) return;
        const fs::path actual = fs::path(CORVANE_FAILURE_PICTURES) / (name + ".txt");
        writeFile(actual, found);
        ADD_FAILURE() << "the elements differ from Controls/" << name << ".txt; they are in "
                      << actual.string() << ":\n"
                      << found;
    }
    void expectWindow(const std::string& name) {
        expectTable(name, [this] { return desktop.window(); });
    }

    /// From the main window's menu.
    void openPanel() {
        ASSERT_TRUE(desktop.opensMainWindow());
        ASSERT_TRUE(desktop.opensPanel());
    }

    DesktopSession& session() { return desktop.session(); }

    AssistiveDesktop desktop;
};

TEST_F(Controls, ofTheFirstRun) {
    // Codex's file can be edited, Claude Code's cannot.
    writeFile(session().home() / ".claude/settings.json", "{");
    startInFirstRun();
    expectWindow("first-run");
    EXPECT_TRUE(desktop.press("Tab", connectClaude));
    EXPECT_TRUE(desktop.press("Tab", connectCodex));
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tRemove\tCodex"));
    EXPECT_TRUE(desktop.press("shift+Tab", connectClaude));
    desktop.press("space");
    // The error appears, and the focus stays.
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tRemove\tCodex"));
    expectWindow("first-run-error");
}

TEST_F(Controls, ofTheSettings) {
    writeFile(session().home() / ".claude/settings.json", "{}\n");
    start();
    ASSERT_TRUE(desktop.opensMainWindow());
    ASSERT_TRUE(desktop.opensSettings());
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAgents\t"));
    EXPECT_TRUE(desktop.press("Tab", connectClaude));
    // Connecting makes a backup of the existing file.
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tRemove\tClaude Code"));
    expectWindow("settings-agents");
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpage tab list\tAgents\t"));
    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAlerts\t"));
    expectWindow("settings-alerts");
    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAbout\t"));
    expectWindow("settings-about");
}

TEST_F(Controls, ofThePanelWithNothingConnected) {
    start();
    openPanel();
    expectWindow("panel-unconnected");
}

TEST_F(Controls, ofThePanelWithSessionsInQuietHours) {
    const AgentConnector connector(session().home());
    EXPECT_EQ(connector.connect(AgentKind::claude, Date::fromSystemClock(std::chrono::system_clock::now())),
              std::nullopt)
        << "there is no file to make a backup of";
    start();
    session().claude("UserPromptSubmit", "a", "shop");
    session().claude("Notification-permission_prompt", "b", "blog");
    session().codex("codex-tui", "handbook");
    ASSERT_TRUE(session().shows(1, 1));
    openPanel();
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tQuit\t"));
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tSettings…\t"));
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tQuiet for 1 hour\t"));
    desktop.press("space");
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tResume\t"));
    expectWindow("panel-sessions");
}

TEST_F(Controls, ofTheBanners) {
    start();
    session().claude("Notification-permission_prompt", "b", "blog");
    ASSERT_TRUE(session().shows(1, 0));
    expectTable("banners", [this] {
        // Again if the previous one has timed out.
        if (session().screen().banners().size() < 2) session().codex("codex-tui", "handbook");
        EXPECT_TRUE(session().shows(1, 1));
        return desktop.tree();
    });
}

} // namespace

} // namespace corvane::test
