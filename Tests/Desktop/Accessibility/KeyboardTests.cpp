// Goes through the windows with the keyboard alone; each change of focus must be reported to assistive
// technology.

#include "Desktop/Accessibility/AssistiveDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::chrono::seconds patience{10};

class Keyboard : public testing::TestWithParam<std::string> {
  protected:
    void start() {
        desktop.startBus();
        session().startApplication();
        desktop.startFollower();
    }

    void startInFirstRun() {
        writeFile(session().home() / ".config/Corvane/Corvane.conf", "");
        start();
        ASSERT_TRUE(desktop.hasKeyboard(1));
    }

    void openSettings() {
        ASSERT_TRUE(desktop.opensMainWindow());
        ASSERT_TRUE(desktop.opensSettings());
        const std::uint32_t settings = session().screen().activeWindow();
        desktop.press("ctrl+0");
        ASSERT_TRUE(waitUntil(patience, [&] { return session().screen().activeWindow() != settings; }));
        ASSERT_TRUE(desktop.hasKeyboard(2));
        desktop.press("ctrl+w");
        ASSERT_TRUE(desktop.hasKeyboard(1));
    }

    [[nodiscard]] bool hasNoWindow() {
        return waitUntil(patience, [this] { return session().screen().managedWindows("corvane").empty(); });
    }

    [[nodiscard]] std::string settingsFile() {
        return fileBytes(session().home() / ".config/Corvane/Corvane.conf").value_or("");
    }
    /// Whether the stored settings contain `text` within the time limit. The preferences' quotation marks are
    /// escaped there.
    [[nodiscard]] bool stores(const std::string& text) {
        return waitUntil(patience, [&] { return settingsFile().find(text) != std::string::npos; });
    }

    [[nodiscard]] bool becomesConnected(const fs::path& file, bool isConnected) {
        return waitUntil(patience, [&] {
            const std::string text = fileBytes(session().home() / file).value_or("");
            return (text.find("corvane-hook") != std::string::npos) == isConnected;
        });
    }

    /// Opens the list of the focused picker. Qt 6.4 reports the selected sound before its list, Qt 6.8 only
    /// the list.
    void opensTheWaitingSounds() {
        const std::string list = "focus\tlist\tWaiting sound\t";
        const auto before = static_cast<std::ptrdiff_t>(desktop.followed().size());
        EXPECT_TRUE(desktop.press("space", list));
        const std::vector<std::string> all = desktop.followed();
        EXPECT_THAT(std::vector<std::string>(all.begin() + before, all.end()),
                    testing::AnyOf(testing::ElementsAre("focus\tlist item\tGlass\t", list),
                                   testing::ElementsAre(list)));
    }

    DesktopSession& session() { return desktop.session(); }

    AssistiveDesktop desktop{GetParam()};
};

TEST_P(Keyboard, goesThroughTheFirstRun) {
    startInFirstRun();
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tConnect\tClaude Code"));
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tRemove\tClaude Code"));
    EXPECT_TRUE(becomesConnected(".claude/settings.json", true));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tConnect\tCodex"));
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tRemove\tCodex"));
    EXPECT_TRUE(becomesConnected(".codex/config.toml", true));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tTry a test alert\t"));
    desktop.press("space");
    EXPECT_TRUE(session().shows(1, 0));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tNeed a custom feature? Contact us\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tDone\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tRemove\tClaude Code"));
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tConnect\tClaude Code"));
    EXPECT_TRUE(becomesConnected(".claude/settings.json", false));
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tDone\t"));
    // The menu returns the focus.
    EXPECT_TRUE(desktop.opensMenu());
    EXPECT_TRUE(desktop.press("Right", "focus\tmenu item\tCorvane\t"));
    desktop.press("Escape");
    // Until it has closed, keys go to it.
    ASSERT_TRUE(waitUntil(patience, [&] { return session().screen().menus().empty(); }));
    EXPECT_TRUE(desktop.press("Escape", "focus\tpush button\tDone\t"));
    desktop.press("space");
    EXPECT_TRUE(hasNoWindow());
    EXPECT_TRUE(stores("hasCompletedOnboarding=true"));
    EXPECT_TRUE(session().application().isRunning());
}

TEST_P(Keyboard, reachesEverySetting) {
    start();
    openSettings();
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAgents\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tConnect\tClaude Code"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tConnect\tCodex"));
    EXPECT_TRUE(desktop.press("space", "focus\tpush button\tRemove\tCodex"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tTry a test alert\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAgents\t"));

    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAlerts\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcheck box\tAlert when an agent finishes\t"));
    EXPECT_TRUE(desktop.press("space", "unchecked\tcheck box\tAlert when an agent finishes\t"));
    EXPECT_TRUE(stores(R"(\"alertWhenDone\":false)"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcheck box\tOpen Corvane at login\t"));
    const fs::path entry = session().home() / ".config/autostart/corvane.desktop";
    EXPECT_TRUE(desktop.press("space", "checked\tcheck box\tOpen Corvane at login\t"));
    EXPECT_TRUE(waitUntil(patience, [&] { return fs::exists(entry); }));
    EXPECT_TRUE(desktop.press("space", "unchecked\tcheck box\tOpen Corvane at login\t"));
    EXPECT_TRUE(waitUntil(patience, [&] { return !fs::exists(entry); }));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcheck box\tPlay sounds\t"));
    EXPECT_TRUE(desktop.press("space", "unchecked\tcheck box\tPlay sounds\t"));
    EXPECT_TRUE(stores(R"(\"soundsOn\":false)"));
    // Without sounds there is none to choose.
    EXPECT_TRUE(desktop.press("Tab", "focus\tcombo box\tRemind me again\t"));
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tcheck box\tPlay sounds\t"));
    EXPECT_TRUE(desktop.press("space", "checked\tcheck box\tPlay sounds\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcombo box\tWaiting sound\t"));
    opensTheWaitingSounds();
    EXPECT_TRUE(desktop.press("Down", "focus\tlist item\tPing\t"));
    EXPECT_TRUE(desktop.press("Return", "focus\tcombo box\tWaiting sound\t"));
    EXPECT_TRUE(stores(R"(\"waitingSound\":\"Ping\")"));
    EXPECT_TRUE(desktop.press("space", "focus\tlist\tWaiting sound\t"));
    EXPECT_TRUE(desktop.press("Escape", "focus\tcombo box\tWaiting sound\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcombo box\tFinished sound\t"));
    desktop.press("Down");
    EXPECT_TRUE(stores(R"(\"doneSound\":\"Funk\")"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tcombo box\tRemind me again\t"));
    desktop.press("Up");
    EXPECT_TRUE(stores(R"(\"reminderMinutes\":1)"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tStart\t"));
    desktop.press("space");
    EXPECT_TRUE(stores("quietUntil"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAlerts\t"));

    EXPECT_TRUE(desktop.press("Right", "focus\tpage tab\tAbout\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tWebsite\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tContact\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpush button\tMore apps ↗\t"));
    EXPECT_TRUE(desktop.press("Tab", "focus\tpage tab list\tAbout\t"));
    EXPECT_TRUE(desktop.press("shift+Tab", "focus\tpush button\tMore apps ↗\t"));
    desktop.press("ctrl+w");
    EXPECT_TRUE(hasNoWindow());
    EXPECT_TRUE(session().application().isRunning());
}

class Commands : public Keyboard {};

TEST_P(Commands, workInEveryWindowWhoseClosingNeverQuits) {
    start();
    ASSERT_TRUE(desktop.opensMainWindow());
    ASSERT_TRUE(desktop.opensPanel());
    desktop.press("ctrl+w");
    ASSERT_TRUE(desktop.hasKeyboard(1)) << "the main window again";
    ASSERT_TRUE(desktop.opensPanel()) << "again";
    desktop.press("ctrl+0");
    ASSERT_TRUE(desktop.hasKeyboard(1)) << "the panel closes for the main window";
    ASSERT_TRUE(desktop.opensMenu());
    EXPECT_TRUE(desktop.press("Down", "focus\tmenu item\tSettings…\t"));
    const std::uint32_t main = session().screen().activeWindow();
    EXPECT_TRUE(desktop.press("Return", "focus\tfiller\tCorvane Settings\t"));
    ASSERT_TRUE(waitUntil(patience, [&] { return session().screen().activeWindow() != main; }));
    ASSERT_TRUE(desktop.hasKeyboard(2));
    const std::uint32_t settings = session().screen().activeWindow();
    desktop.press("ctrl+n");
    desktop.press("ctrl+0");
    ASSERT_TRUE(waitUntil(patience, [&] { return session().screen().activeWindow() != settings; }));
    ASSERT_TRUE(desktop.hasKeyboard(2)) << "no command opens yet another window";
    desktop.press("ctrl+comma");
    ASSERT_TRUE(waitUntil(patience, [&] { return session().screen().activeWindow() == settings; }));
    ASSERT_TRUE(desktop.hasKeyboard(2));
    desktop.press("ctrl+w");
    ASSERT_TRUE(desktop.hasKeyboard(1));
    desktop.press("ctrl+w");
    ASSERT_TRUE(hasNoWindow());
    EXPECT_FALSE(session().application().wait(500ms)) << "it lives on without windows";

    ASSERT_TRUE(desktop.opensMainWindow());
    desktop.press("ctrl+q");
    ASSERT_EQ(session().application().wait(patience), 0);
    EXPECT_EQ(session().applicationOutput(), "");

    session().startApplication();
    ASSERT_TRUE(desktop.opensMainWindow());
    ASSERT_TRUE(desktop.opensMenu());
    EXPECT_TRUE(desktop.press("Up", "focus\tmenu item\tQuit\t"));
    desktop.press("Return");
    EXPECT_EQ(session().application().wait(patience), 0);
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, Commands, testing::Values("openbox", "xfwm4"),
                         [](const auto& manager) { return manager.param; });
INSTANTIATE_TEST_SUITE_P(WindowManagers, Keyboard, testing::ValuesIn(focusingWindowManagers()),
                         [](const auto& manager) { return manager.param; });

} // namespace

} // namespace corvane::test
