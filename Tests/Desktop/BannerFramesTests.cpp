// Every banner is whole in every frame that the screen shows, whatever happens to the others.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FrameWatch.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

struct Desktop {
    std::string windowManager;
    Compositor compositor = Compositor::none;

    [[nodiscard]] std::string name() const {
        return windowManager + (compositor == Compositor::picom ? "WithPicom" : "");
    }
    friend std::ostream& operator<<(std::ostream& stream, const Desktop& desktop) {
        return stream << desktop.name();
    }
};

// All that blend windows: openbox with picom, and the window managers that do it themselves.
std::vector<Desktop> blendedDesktops() {
    std::vector<Desktop> result;
    for (const std::string& name : windowManagers())
        result.push_back({name, name == "openbox" ? Compositor::picom : Compositor::windowManager});
    return result;
}

class BannerFrames : public testing::TestWithParam<Desktop> {
  protected:
    void SetUp() override {
        desktop.startApplication();
        ASSERT_TRUE(desktop.screen().isComposited());
        watch = std::make_unique<FrameWatch>(desktop.display(), desktop.painters());
    }

    void raiseBanner(const char* session) {
        desktop.claude("Notification-permission_prompt", session, "shop");
    }
    void resolve(const char* session) { desktop.claude("PostToolUse-Bash", session, "shop"); }

    // Whether at least so many banners were watched, and all of them were whole all the time.
    testing::AssertionResult areWhole(std::size_t atLeast) {
        const FrameWatch::Result seen = watch->stop();
        if (seen.torn > 0) {
            const std::filesystem::path picture =
                std::filesystem::path(CORVANE_FAILURE_PICTURES) / ("torn-" + GetParam().name() + ".png");
            std::filesystem::create_directories(picture.parent_path());
            seen.picture.save(picture);
            return testing::AssertionFailure() << "torn " << seen.torn << " times in " << seen.frames
                                               << " frames; first " << seen.fault << ", see " << picture;
        }
        if (seen.cards < atLeast) {
            return testing::AssertionFailure()
                   << "only " << seen.cards << " banners were watched, in " << seen.frames << " frames";
        }
        return testing::AssertionSuccess();
    }

    DesktopSession desktop{GetParam().windowManager, GetParam().compositor};
    std::unique_ptr<FrameWatch> watch;
};

TEST_P(BannerFrames, bannersAreWholeWhileOthersAppearAndDisplaceThem) {
    raiseBanner("a");
    ASSERT_TRUE(desktop.shows(1, 0));
    raiseBanner("b");
    ASSERT_TRUE(desktop.shows(2, 0));
    raiseBanner("c");
    ASSERT_TRUE(desktop.shows(3, 0));
    std::this_thread::sleep_for(1500ms);
    raiseBanner("d"); // and "a" fades out below the others
    ASSERT_TRUE(desktop.shows(3, 0));
    std::this_thread::sleep_for(1500ms);
    desktop.codex("codex-tui", "shop");
    ASSERT_TRUE(desktop.shows(2, 1));
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(areWhole(5));
}

TEST_P(BannerFrames, bannersAreWholeWhileOthersDisappearAndTheGapCloses) {
    for (const char* const session : {"a", "b", "c"}) {
        raiseBanner(session);
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop.inbox().empty(); }));
    }
    ASSERT_TRUE(desktop.shows(3, 0));
    std::this_thread::sleep_for(500ms);
    resolve("b");
    ASSERT_TRUE(desktop.shows(2, 0));
    std::this_thread::sleep_for(500ms);
    resolve("c");
    ASSERT_TRUE(desktop.shows(1, 0));
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(areWhole(3));
}

TEST_P(BannerFrames, bannersAreWholeWhileTheirClocksTickAtTheSameMoment) {
    // All three are shown at once, and so tick at once.
    desktop.application().signal(SIGSTOP);
    for (const char* const session : {"a", "b", "c"})
        raiseBanner(session);
    desktop.application().signal(SIGCONT);
    ASSERT_TRUE(desktop.shows(3, 0));
    std::this_thread::sleep_for(3500ms);
    EXPECT_TRUE(areWhole(3));
}

INSTANTIATE_TEST_SUITE_P(Desktops, BannerFrames, testing::ValuesIn(blendedDesktops()),
                         [](const auto& desktop) { return desktop.param.name(); });

} // namespace

} // namespace corvane::test
