// Which windows are searched for, and in which way; the windows themselves are tested on real desktops.

#include "Platform/Linux/Applications.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// Knows the windows of one process, and reports at once or when the test wants.
class FakeRaiser : public WindowRaiser {
  public:
    void raise(const WindowSearch& search, QObject& /*context*/, Report report) override {
        searches.push_back(search);
        const bool isFound = std::ranges::find(search.processes, window) != search.processes.end() ||
                             (search.processes.empty() && hasClass);
        if (isDeferred) {
            pending.push_back([report = std::move(report), isFound] { report(isFound); });
        } else {
            report(isFound);
        }
    }

    pid_t window = 0; ///< the process that has one
    bool hasClass = false;
    bool isDeferred = false;
    std::vector<WindowSearch> searches;
    std::vector<std::function<void()>> pending;
};

class LinuxApplicationsTest : public testing::Test {
  protected:
    void add(pid_t process, pid_t parent, const std::string& program, const std::string& environment = {}) {
        const fs::path folder = root_.path() / std::to_string(process);
        test::writeFile(folder / "comm", program + "\n");
        test::writeFile(folder / "cmdline", program + "\0"s);
        test::writeFile(folder / "environ", environment);
        test::writeFile(folder / "stat", std::to_string(process) + " (" + program + ") S " +
                                             std::to_string(parent) +
                                             " 1 1 34816 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 1 0 0");
        fs::create_symlink("/w/shop", folder / "cwd");
    }

    void activate(std::optional<std::string> bundleID = std::nullopt) {
        applications_->activate({std::move(bundleID), "", "claude", "/w/shop"},
                                [this](bool isFound) { reports_.push_back(isFound); });
    }

    test::ScratchFolder root_{"proc"};
    std::shared_ptr<FakeRaiser> first_ = std::make_shared<FakeRaiser>();
    std::shared_ptr<FakeRaiser> second_ = std::make_shared<FakeRaiser>();
    std::vector<std::shared_ptr<WindowRaiser>> raisers_{first_, second_};
    std::unique_ptr<LinuxApplications> applications_ =
        std::make_unique<LinuxApplications>([this] { return raisers_; }, ProcessTable(root_.path()));
    std::vector<bool> reports_;
};

TEST_F(LinuxApplicationsTest, theFirstRaiserThatFindsAWindowEndsTheSearch) {
    add(1, 0, "init");
    add(20, 1, "foot");
    add(30, 20, "claude", "WINDOWID=4711\0"s);
    first_->window = 20;
    activate();
    EXPECT_EQ(reports_, std::vector<bool>{true});
    ASSERT_EQ(first_->searches.size(), 1U);
    EXPECT_TRUE(second_->searches.empty());
    EXPECT_EQ(first_->searches[0].processes, (std::vector<pid_t>{30, 20, 1}));
    EXPECT_EQ(first_->searches[0].windowID, 4711U);
    EXPECT_EQ(first_->searches[0].directory, QStringLiteral("/w/shop"));
    EXPECT_EQ(first_->searches[0].agent, QStringLiteral("claude"));
}

TEST_F(LinuxApplicationsTest, theNextRaiserIsTriedIfTheFirstFindsNone) {
    add(30, 1, "claude");
    second_->window = 30;
    activate();
    EXPECT_EQ(reports_, std::vector<bool>{true});
    EXPECT_EQ(first_->searches.size(), 1U);
}

TEST_F(LinuxApplicationsTest, theRaisersAreChosenForEachJump) {
    add(30, 1, "claude");
    second_->window = 30;
    activate();
    raisers_ = {second_};
    activate();
    EXPECT_EQ(first_->searches.size(), 1U);
    EXPECT_EQ(second_->searches.size(), 2U);
}

TEST_F(LinuxApplicationsTest, theOutcomeMayBeDeferred) {
    add(30, 1, "claude");
    first_->isDeferred = true;
    first_->window = 30;
    activate();
    EXPECT_TRUE(reports_.empty());
    // The pending callback holds the search, which holds the raiser.
    std::exchange(first_->pending, {}).at(0)();
    EXPECT_EQ(reports_, std::vector<bool>{true});
    EXPECT_TRUE(second_->searches.empty());
}

TEST_F(LinuxApplicationsTest, allAgentsAreTriedThenTheClasses) {
    add(30, 1, "claude");
    add(31, 1, "claude");
    second_->hasClass = true;
    activate("com.mitchellh.ghostty");
    EXPECT_EQ(reports_, std::vector<bool>{true});
    ASSERT_EQ(second_->searches.size(), 3U);
    EXPECT_TRUE(second_->searches[2].processes.empty());
    EXPECT_EQ(second_->searches[2].classes.front(), QStringLiteral("com.mitchellh.ghostty"));
}

TEST_F(LinuxApplicationsTest, nothingIsFoundWithoutAnAgentOrAnIdentifier) {
    activate();
    EXPECT_EQ(reports_, std::vector<bool>{false});
    EXPECT_TRUE(first_->searches.empty());
    add(30, 1, "claude");
    activate();
    activate("com.mitchellh.ghostty");
    EXPECT_EQ(reports_, (std::vector<bool>{false, false, false}));
}

TEST(WindowRaisers, areChosenByTheSession) {
    const QByteArray socket = qgetenv("SWAYSOCK");
    const QByteArray display = qgetenv("WAYLAND_DISPLAY");
    qunsetenv("SWAYSOCK");
    qunsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(windowRaisers().size(), 1U) << "X11's alone";
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    EXPECT_EQ(windowRaisers().size(), 2U);
    qputenv("SWAYSOCK", "/run/sway");
    EXPECT_EQ(windowRaisers().size(), 3U);
    for (const auto& [name, value] : {std::pair("SWAYSOCK", socket), std::pair("WAYLAND_DISPLAY", display)}) {
        if (value.isNull()) {
            qunsetenv(name);
        } else {
            qputenv(name, value);
        }
    }
}

} // namespace
} // namespace corvane
