#pragma once

#include "App/Support/Pointing.h"
#include "BannerController.h"
#include "Model/AppModel.h"
#include "OnboardingView.h"
#include "Platform/Appearance.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Settings/SettingsTabBar.h"
#include "SettingsView.h"
#include "Support/TestSupport.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

/// A model over a home directory of its own, for views to show.
struct ModelFixture {
    ScratchFolder home{"home"};
    MemoryUserDefaults defaults;
    recording::RecordingPlatform platform;
    BannerController banners{platform.services()};
    std::vector<std::string> opened; ///< the addresses that would have been opened
    std::optional<AppModel> instance;

    AppModel& model() {
        if (!instance) instance.emplace(AgentConnector(home.path()), defaults, banners, platform.services());
        return *instance;
    }

    [[nodiscard]] links::Opener openLink() {
        return [this](const QUrl& url) { opened.push_back(url.toString().toStdString()); };
    }
    [[nodiscard]] ReduceMotion reduceMotion() {
        return [this] { return platform.appearance.reduceMotion(); };
    }

    [[nodiscard]] std::unique_ptr<OnboardingView> onboarding() {
        auto view = std::make_unique<OnboardingView>(model(), openLink());
        (void)view->grab(); // lays out what is not shown
        return view;
    }
    [[nodiscard]] std::unique_ptr<SettingsView> settings(QWidget* parent = nullptr) {
        return std::make_unique<SettingsView>(model(), platform.fileBrowser, reduceMotion(), openLink(),
                                              parent);
    }

    /// Connects Claude Code, whose settings already exist, so that a backup is made.
    void connectClaude() {
        writeFile(home / ".claude/settings.json", "{}\n");
        model().connectAgent(AgentKind::claude);
    }
    /// Fails to connect Codex, whose notify line belongs to another program.
    void failToConnectCodex() {
        writeFile(home / ".codex/config.toml", "notify = [\"/usr/local/bin/ping-me\"]\n");
        model().connectAgent(AgentKind::codex);
    }
};

/// A window's content in one of the states that users see, with a name that is valid as a file name.
struct WindowState {
    std::string name;
    std::function<std::unique_ptr<QWidget>(ModelFixture&)> make;
};

/// Every state of the first-run and the settings window.
inline std::vector<WindowState> windowStates() {
    enum class Tab { agents, alerts, about };
    const auto settings = [](ModelFixture& fixture, Tab tab) {
        auto view = fixture.settings();
        view->tabs().setCurrentIndex(static_cast<int>(tab));
        return view;
    };
    return {
        {"first-run", [](ModelFixture& fixture) { return fixture.onboarding(); }},
        {"first-run-connected",
         [](ModelFixture& fixture) {
             fixture.connectClaude();
             return fixture.onboarding();
         }},
        {"first-run-both-connected",
         [](ModelFixture& fixture) {
             fixture.connectClaude();
             fixture.model().connectAgent(AgentKind::codex);
             return fixture.onboarding();
         }},
        {"first-run-error",
         [](ModelFixture& fixture) {
             fixture.connectClaude();
             fixture.failToConnectCodex();
             return fixture.onboarding();
         }},
        {"first-run-no-tray",
         [](ModelFixture& fixture) {
             auto view = fixture.onboarding();
             view->setTray(false);
             return view;
         }},
        {"first-run-right-to-left",
         [](ModelFixture& fixture) {
             fixture.connectClaude();
             auto view = fixture.onboarding();
             view->setLayoutDirection(Qt::RightToLeft);
             return view;
         }},
        {"settings-agents",
         [settings](ModelFixture& fixture) {
             fixture.connectClaude();
             fixture.failToConnectCodex();
             return settings(fixture, Tab::agents);
         }},
        {"settings-agents-fresh",
         [settings](ModelFixture& fixture) { return settings(fixture, Tab::agents); }},
        {"settings-alerts", [settings](ModelFixture& fixture) { return settings(fixture, Tab::alerts); }},
        {"settings-alerts-error",
         [settings](ModelFixture& fixture) {
             fixture.platform.loginItem.failure = "The folder for autostart entries cannot be written.";
             fixture.model().setOpensAtLogin(true);
             AlertPreferences prefs;
             prefs.soundsOn = false;
             prefs.waitingSound = "Sosumi";
             prefs.reminderMinutes = 0;
             fixture.model().setPrefs(prefs);
             return settings(fixture, Tab::alerts);
         }},
        {"settings-alerts-quiet",
         [settings](ModelFixture& fixture) {
             fixture.model().quietForAnHour();
             return settings(fixture, Tab::alerts);
         }},
        {"settings-alerts-right-to-left",
         [settings](ModelFixture& fixture) {
             auto view = settings(fixture, Tab::alerts);
             view->setLayoutDirection(Qt::RightToLeft);
             return view;
         }},
        {"settings-agents-focus",
         [settings](ModelFixture& fixture) {
             fixture.connectClaude();
             auto view = settings(fixture, Tab::agents);
             (void)view->grab();
             focusByKeyboard(view->tabs());
             for (auto* const button : view->findChildren<QAbstractButton*>()) {
                 if (button->isVisibleTo(view.get())) focusByKeyboard(*button);
             }
             return view;
         }},
        {"settings-alerts-focus",
         [settings](ModelFixture& fixture) {
             auto view = settings(fixture, Tab::alerts);
             (void)view->grab();
             for (auto* const control : view->findChildren<QWidget*>()) {
                 const bool isControl = qobject_cast<QAbstractButton*>(control) != nullptr ||
                                        qobject_cast<Picker*>(control) != nullptr;
                 if (isControl && control->isVisibleTo(view.get())) focusByKeyboard(*control);
             }
             return view;
         }},
        {"settings-about", [settings](ModelFixture& fixture) { return settings(fixture, Tab::about); }},
    };
}

} // namespace corvane::test
