// Visible banners at another scale, which a desktop can set at any time.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Starvation.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

constexpr Color outline{0x8A5300};
constexpr int tolerance = 40; // an edge may lie between two pixels

class BannerScale : public testing::TestWithParam<Compositor> {
  protected:
    /// As XFCE's own dialog does.
    void setResolution(int dotsPerInch) {
        desktop.setSettings("Xft/DPI " + std::to_string(dotsPerInch * 1024) + "\n");
    }

    /// What is wrong with the outline of a card that should be there.
    [[nodiscard]] std::optional<std::string> fault(Rect card) const {
        const Picture screen = desktop.screen().screen();
        const struct {
            const char* name;
            int x;
            int y;
        } edges[] = {{"top", card.middleX(), card.y},
                     {"bottom", card.middleX(), card.bottom() - 1},
                     {"left", card.x, card.middleY()},
                     {"right", card.right() - 1, card.middleY()}};
        for (const auto& edge : edges) {
            if (!screen.at(edge.x, edge.y).isNear(outline, tolerance))
                return std::string("there is no edge at its ") + edge.name;
        }
        return std::nullopt;
    }

    /// Whether it is within `limit`, not counting the time in which the desktop waits for a processor.
    testing::AssertionResult isWholeAt(Rect card, std::chrono::milliseconds limit) {
        std::optional<std::string> last;
        const bool isWhole = holdsWithin(limit, Starvation(desktop.painters()), [&] {
            last = fault(card);
            return !last;
        });
        return isWhole ? testing::AssertionSuccess() : testing::AssertionFailure() << *last;
    }

    mutable DesktopSession desktop{"openbox", GetParam()};
};

TEST_P(BannerScale, visibleBannersAreWholeAndInPlaceAtOnceAtEachNewResolution) {
    setResolution(96);
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    desktop.claude("Notification-permission_prompt", "b", "shop");
    ASSERT_TRUE(desktop.shows(2, 0));
    // Less than the second after which the banners look at the desktop by themselves.
    constexpr auto atOnce = 600ms;
    for (int round = 0; round < 3; ++round) {
        setResolution(120);
        EXPECT_TRUE(isWholeAt({315, 10, 650, 120}, atOnce)) << "newer one, round " << round;
        EXPECT_TRUE(isWholeAt({315, 140, 650, 120}, atOnce)) << "older one, round " << round;
        setResolution(192);
        EXPECT_TRUE(isWholeAt({120, 16, 1040, 192}, atOnce)) << "newer one, round " << round;
        EXPECT_TRUE(isWholeAt({120, 224, 1040, 192}, atOnce)) << "older one, round " << round;
        setResolution(96);
        EXPECT_TRUE(isWholeAt({380, 8, 520, 96}, atOnce)) << "newer one, round " << round;
        EXPECT_TRUE(isWholeAt({380, 112, 520, 96}, atOnce)) << "older one, round " << round;
    }
    EXPECT_TRUE(desktop.shows(2, 0));
}

TEST_P(BannerScale, theWholeCardTakesClicksAtItsNewSize) {
    setResolution(96);
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    setResolution(192);
    ASSERT_TRUE(isWholeAt({120, 16, 1040, 192}, 10s));
    // Past the time in which a control that has just moved ignores presses.
    desktop.pointAway();
    EXPECT_FALSE(waitUntil(1s, [&] { return desktop.screen().windowCount() == 0; }));
    desktop.click({1103, 145, 30, 30}); // the cross
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop.screen().windowCount() == 0; }));
}

INSTANTIATE_TEST_SUITE_P(Compositors, BannerScale, testing::Values(Compositor::none, Compositor::picom),
                         [](const auto& compositor) {
                             return compositor.param == Compositor::none ? "none" : "picom";
                         });

} // namespace
} // namespace corvane::test
