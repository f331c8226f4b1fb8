#pragma once

#include "BannerController.h"
#include "Model/AppModel.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Support/TestSupport.h"

#include <QAbstractButton>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvane::test {

/// The button of this text or accessible name.
inline QAbstractButton& buttonOf(const QWidget& view, const char* name) {
    for (auto* const button : view.findChildren<QAbstractButton*>()) {
        if (button->text() == QLatin1String(name) || button->accessibleName() == QLatin1String(name))
            return *button;
    }
    throw std::runtime_error(std::string("no button ") + name);
}

/// A model with a home folder, a clock and a desktop of its own.
class AppModelTest : public testing::Test {
  protected:
    AppModelTest() { std::filesystem::create_directories(paths_.events()); }

    AppModel& model() {
        if (!model_)
            model_.emplace(AgentConnector(home_.path(), paths_), defaults_, banners_, platform_.services());
        return *model_;
    }

    /// Advances the time by `count` passes of the loop. The first call runs the pass at the start.
    void pass(int count = 1) {
        model();
        for (int i = 0; i < count; ++i) {
            platform_.time.advance(model().ticks() == 0 ? std::chrono::milliseconds(0)
                                                        : std::chrono::seconds(1));
        }
    }

    /// Drops an event file as the hook would, written at the fake clock's current time.
    void drop(const std::string& source, const std::string& payload, Seconds age = Seconds(0)) {
        const auto file = paths_.events() / (std::to_string(++files_) + "-1.event");
        writeFile(file, "corvane-event 1\nsource=" + source + "\nterm=ghostty\nbundle=\n---\n" + payload);
        setModificationDate(file, platform_.time.now() - age);
    }

    void dropClaude(const std::string& event, const std::string& session, Seconds age = Seconds(0)) {
        drop(
            "claude",
            R"({"hook_event_name":")" + event + R"(","session_id":")" + session +
                R"(","cwd":"/w/shop","notification_type":"permission_prompt","message":"Claude needs your permission to use Bash"})",
            age);
    }

    void dropCodexDone(const std::string& session, Seconds age = Seconds(0)) {
        drop("codex", R"({"type":"agent-turn-complete","thread-id":")" + session + R"(","cwd":"/w/shop"})",
             age);
    }

    void click(const char* name) {
        const auto visible = platform_.panels.visible();
        ASSERT_FALSE(visible.empty());
        buttonOf(*visible.front()->content, name).click();
    }

    [[nodiscard]] std::size_t visible() const { return platform_.panels.visible().size(); }
    [[nodiscard]] const std::vector<std::string>& played() const { return platform_.sounds.played; }

    ScratchFolder home_{"home"};
    CorvanePaths paths_ = CorvanePaths::standard(home_.path());
    MemoryUserDefaults defaults_;
    recording::RecordingPlatform platform_;
    BannerController banners_{platform_.services()};
    std::optional<AppModel> model_;
    int files_ = 0;
};

} // namespace corvane::test
