// The application's own panel and menus, and the banners that appear while they are open: every click hits
// what the user sees.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

bool overlap(Rect a, Rect b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// With the tray in the middle of the upper edge, where the banners are.
class OwnWindows : public testing::Test {
  protected:
    void SetUp() override {
        trayer =
            desktop.run({"trayer", "--edge", "top", "--align", "center", "--widthtype", "pixel", "--width",
                         "120", "--height", "24", "--SetDockType", "true", "--SetPartialStrut", "true"},
                        "trayer");
        desktop.startApplication();
        ASSERT_TRUE(hasIcon());
        desktop.claude("Notification-permission_prompt", "a", "shop");
        ASSERT_TRUE(waitUntil(10s, [this] { return desktop.inbox().empty(); }));
        desktop.claude("Notification-permission_prompt", "b", "shop");
        ASSERT_TRUE(desktop.shows(2, 0));
        before = desktop.screen().banners();
    }

    /// Waits until the bell, found by its colour, stays at its place.
    bool hasIcon() {
        int looks = 0;
        return waitUntil(10s, [&] {
            const std::optional<Rect> found = bell();
            looks = found && *found == icon ? looks + 1 : 0;
            icon = found.value_or(Rect());
            return looks == 30;
        });
    }

    [[nodiscard]] std::optional<Rect> bell() {
        const Picture screen = desktop.screen().screen();
        for (int x = 560; x < 720; ++x) {
            for (int y = 0; y < 26; ++y) {
                if (screen.at(x, y).isNear({0x1D1D1F}, 3)) return Rect{x, y, 2, 2};
            }
        }
        return std::nullopt;
    }

    /// The geometry of the open panel, or of the open menu, once it stays the same; empty if none opens.
    [[nodiscard]] Rect settled(const std::function<std::vector<Rect>()>& open) {
        Rect last;
        int looks = 0;
        waitUntil(10s, [&] {
            const std::vector<Rect> present = open();
            const Rect now = present.size() == 1 ? present.front() : Rect();
            looks = now.width > 0 && now == last ? looks + 1 : 0;
            last = now;
            return looks == 20;
        });
        return last;
    }
    [[nodiscard]] Rect openPanel() {
        return settled([this] {
            std::vector<Rect> result;
            for (const std::uint32_t window : windows())
                result.push_back(desktop.screen().geometry(window));
            return result;
        });
    }
    [[nodiscard]] Rect openMenu() {
        return settled([this] { return desktop.screen().menus(); });
    }

    void rightClick(Rect area) {
        EXPECT_EQ(desktop
                      .run({"xdotool", "mousemove", std::to_string(area.middleX()),
                            std::to_string(area.middleY()), "click", "3"},
                           "xdotool")
                      ->wait(10s),
                  0);
    }

    /// Presses and releases as slowly as a hand may.
    void pressLikeAHand(Rect area) {
        EXPECT_EQ(desktop
                      .run({"xdotool", "mousemove", std::to_string(area.middleX()),
                            std::to_string(area.middleY()), "mousedown", "1", "sleep", "0.3", "mouseup", "1"},
                           "xdotool")
                      ->wait(10s),
                  0);
    }

    [[nodiscard]] std::vector<std::uint32_t> windows() { return desktop.screen().managedWindows("corvane"); }

    /// Whether both banners are placed below `area`, clear of it.
    [[nodiscard]] bool areBelow(Rect area) {
        return waitUntil(10s, [&] {
            const std::vector<Banner> banners = desktop.screen().banners();
            return banners.size() == 2 && std::ranges::all_of(banners, [&](const Banner& banner) {
                       return !overlap(banner.card, area) && banner.card.y >= area.y + area.height;
                   });
        });
    }

    DesktopSession desktop;
    std::unique_ptr<ChildProcess> trayer;
    Rect icon;
    std::vector<Banner> before;
};

TEST_F(OwnWindows, bannersMoveBelowThePanelWhoseButtonsTakeTheirClicks) {
    desktop.click(icon);
    const Rect panel = openPanel();
    ASSERT_TRUE(overlap(panel, before.front().card)) << "the panel is to be where the banners were";
    ASSERT_TRUE(areBelow(panel));
    EXPECT_TRUE(waitUntil(10s, [this] {
        const std::vector<std::uint32_t> present = windows();
        const std::vector<Banner> banners = desktop.screen().banners();
        return present.size() == 1 && std::ranges::all_of(banners, [&](const Banner& banner) {
                   return desktop.screen().isAbove(present.front(), banner.window);
               });
    }));
    // A banner that appears now keeps clear of the panel as well.
    desktop.claude("PostToolUse-Bash", "b", "shop");
    ASSERT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 1; }));
    desktop.claude("Notification-permission_prompt", "b", "shop");
    ASSERT_TRUE(areBelow(panel));

    // "Settings…" in the footer: the shadow, the padding, "Quit", the gap, and half of its own width.
    desktop.click({panel.x + panel.width - 24 - 12 - 26 - 16 - 30, panel.y + panel.height - 32 - 20, 2, 2});
    EXPECT_TRUE(waitUntil(10s, [this] {
        const auto present = windows();
        return present.size() == 1 && desktop.screen().geometry(present.front()).width > 400;
    })) << "the settings take the place of the panel";
    EXPECT_TRUE(desktop.shows(2, 0)) << "the banners return";
}

TEST_F(OwnWindows, aClickOnABannersButtonLandsInItWhileThePanelIsOpen) {
    desktop.click(icon);
    const Rect panel = openPanel();
    ASSERT_GT(panel.width, 0) << "the panel opens";
    ASSERT_TRUE(areBelow(panel));
    desktop.click(snoozeButton(desktop.screen().banners().front()));
    EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 1; }));
    EXPECT_EQ(windows().size(), 1U) << "the panel stays open";
}

TEST_F(OwnWindows, aRightClickOnAnyPartOfTheIconOpensTheMenuWhileThePanelIsOpen) {
    // The room for the panel's shadow covers the lower part.
    for (const int y : {3, 20}) {
        desktop.click(icon);
        ASSERT_TRUE(waitUntil(10s, [this] { return windows().size() == 1; }));
        rightClick({icon.x + 4, y, 2, 2});
        EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().menus().size() == 1; })) << "at " << y;
        EXPECT_TRUE(waitUntil(10s, [this] { return windows().empty(); })) << "at " << y;
        // More than once: the menu takes the keyboard a moment after it has appeared.
        ASSERT_TRUE(waitUntil(10s, [this] {
            desktop.run({"xdotool", "key", "Escape"}, "xdotool")->wait(10s);
            return desktop.screen().menus().empty();
        }));
    }
}

TEST_F(OwnWindows, bannersMoveBelowTheMenuAndAClickOnTheirButtonsLandsInThem) {
    rightClick(icon);
    const Rect menu = openMenu();
    ASSERT_TRUE(overlap(menu, before.front().card) || overlap(menu, before.back().card));
    ASSERT_TRUE(areBelow(menu));
    pressLikeAHand(snoozeButton(desktop.screen().banners().front()));
    EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().menus().empty(); }));
    EXPECT_TRUE(waitUntil(10s, [this] { return desktop.screen().banners().size() == 1; }));
    EXPECT_TRUE(windows().empty()) << "no entry of the menu was chosen";
    EXPECT_TRUE(desktop.shows(1, 0)) << "the other banner returns";
}

TEST_F(OwnWindows, anEntryOfTheMenuTakesItsClick) {
    rightClick(icon);
    const Rect menu = openMenu();
    ASSERT_GT(menu.width, 0) << "the menu opens";
    ASSERT_TRUE(areBelow(menu));
    // The first entry, below the room for the shadow and the card's own edge.
    desktop.click({menu.middleX(), menu.y + 16 + 4 + 14, 2, 2});
    EXPECT_TRUE(waitUntil(10s, [this] { return windows().size() == 1; })) << "the main window";
    EXPECT_TRUE(desktop.shows(2, 0)) << "the banners return";
}

} // namespace
} // namespace corvane::test
