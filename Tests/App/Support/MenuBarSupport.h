#pragma once

#include "BannerController.h"
#include "Model/AppModel.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Support/CorvanePaths.h"
#include "Support/TestSupport.h"

#include <QAbstractButton>
#include <QWidget>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

/// A model over a scratch home, with agents' events and a fake clock.
struct MenuBarWorld {
    MenuBarWorld() {
        const std::filesystem::path events = paths.events();
        std::filesystem::create_directories(events);
    }

    AppModel& model() {
        if (!instance) {
            instance.emplace(AgentConnector(home.path(), paths), defaults, banners, platform.services());
            platform.time.advance(std::chrono::milliseconds(0));
        }
        return *instance;
    }

    void connect(AgentKind agent = AgentKind::claude) { model().connectAgent(agent); }

    /// Makes the hook report an event of Claude Code, and advances the time by the second until it is read.
    void claude(const std::string& event, const std::string& session, const std::string& project = "shop") {
        report("claude", R"({"hook_event_name":")" + event + R"(","session_id":")" + session +
                             R"(","cwd":"/w/)" + project +
                             R"(","notification_type":"permission_prompt","message":"Claude needs your )"
                             R"(permission to use Bash"})");
    }
    void codexDone(const std::string& session, const std::string& project) {
        report("codex", R"({"type":"agent-turn-complete","thread-id":")" + session + R"(","cwd":"/w/)" +
                            project + R"("})");
    }
    void waits(const std::string& session, const std::string& project = "shop") {
        claude("Notification", session, project);
    }
    void runs(const std::string& session, const std::string& project = "shop") {
        claude("UserPromptSubmit", session, project);
    }
    void ends(const std::string& session) { claude("SessionEnd", session); }

    void pass(int count = 1) {
        model();
        platform.time.advance(std::chrono::seconds(count));
    }

    ScratchFolder home{"home"};
    CorvanePaths paths = CorvanePaths::standard(home.path());
    MemoryUserDefaults defaults;
    recording::RecordingPlatform platform;
    BannerController banners{platform.services()};
    std::optional<AppModel> instance;

  private:
    void report(const std::string& source, const std::string& payload) {
        model();
        const auto file = paths.events() / (std::to_string(++files_) + "-1.event");
        writeFile(file, "corvane-event 1\nsource=" + source + "\nterm=ghostty\nbundle=\n---\n" + payload);
        setModificationDate(file, platform.time.now());
        pass();
    }

    int files_ = 0;
};

/// The visible button of this text or name; null when there is none.
inline QAbstractButton* button(const QWidget& view, const char* text) {
    for (auto* const button : view.findChildren<QAbstractButton*>()) {
        const bool isNamed =
            button->text() == QString::fromUtf8(text) || button->accessibleName() == QString::fromUtf8(text);
        if (isNamed && !button->isHidden()) return button;
    }
    return nullptr;
}

} // namespace corvane::test
