// How banners appear and disappear, frame by frame as the screen shows it.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
using Samples = std::vector<FadeSample>;

// Where the first waiting banner is on the test's screen.
constexpr Rect card{380, 8, 520, 96};
constexpr int slide = 12;

// A channel of the probe may be off by rounding.
constexpr double rounding = 0.02;

class BannerMotion : public testing::TestWithParam<Compositor> {
  protected:
    void SetUp() override {
        desktop.startApplication();
        const Rect probe = fadeProbe(card);
        wallpaper = desktop.screen().screen(probe).at(0, 0);
    }

    Samples record(const std::function<bool(const Samples&)>& isOver) {
        return recordFade(desktop, card, wallpaper, isOver);
    }

    void raise() { desktop.claude("Notification-permission_prompt", "a", "shop"); }
    void resolve() { desktop.claude("PostToolUse-Bash", "a", "shop"); }

    /// Records a banner that appears. Where a busy machine has disturbed the fifth of a second that this
    /// takes, it is dismissed and shown again.
    Samples recordShowing() {
        for (int attempt = 1;; ++attempt) {
            raise();
            Samples samples = record(stands);
            if (attempt == mostAttempts || !stands(samples) || isUndisturbed(samples)) return samples;
            resolve();
            EXPECT_TRUE(desktop.shows(0, 0));
        }
    }
    /// The same for a banner that disappears.
    Samples recordHiding() {
        for (int attempt = 1;; ++attempt) {
            raise();
            EXPECT_TRUE(stands(record(stands))) << "it has not come";
            resolve();
            Samples samples = record(hasGone);
            if (attempt == mostAttempts || !hasGone(samples) || isUndisturbed(samples)) return samples;
            EXPECT_TRUE(desktop.shows(0, 0));
        }
    }

    static bool stands(const Samples& samples) {
        const FadeSample& last = samples.back();
        return last.isMapped && last.top == card.y && last.opacity >= 1 - rounding;
    }
    static bool hasGone(const Samples& samples) { return !samples.back().isMapped; }

    static constexpr int mostAttempts = 12;

    DesktopSession desktop{"openbox", GetParam()};
    Color wallpaper;
};

// The tops of the card while it was on the screen.
std::vector<int> tops(const Samples& samples) {
    std::vector<int> result;
    for (const FadeSample& sample : samples) {
        if (sample.isMapped) result.push_back(sample.top);
    }
    return result;
}

TEST_P(BannerMotion, bannerSlidesDownToItsPlaceAndStaysThere) {
    const std::vector<int> seen = tops(recordShowing());
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_GE(seen.front(), card.y - slide);
    EXPECT_LE(seen.front(), card.y - slide / 2) << "it was not seen on its way";
    EXPECT_EQ(seen.back(), card.y);
    EXPECT_TRUE(desktop.shows(1, 0));
}

// Only where windows are blended can a banner fade.
class BlendedBannerMotion : public BannerMotion {};

TEST_P(BlendedBannerMotion, opacityRisesSteadilyWhileTheBannerComes) {
    const Samples samples = recordShowing();
    ASSERT_TRUE(stands(samples));
    EXPECT_LE(largestRelapse(samples, +1), rounding);
    EXPECT_GE(stepsBetween(samples), 4U);
    EXPECT_GE(fadeLength(samples), 150ms);
    EXPECT_LE(fadeLength(samples), 400ms);
}

TEST_P(BlendedBannerMotion, opacityFallsSteadilyInPlaceWhileTheBannerGoes) {
    const Samples samples = recordHiding();
    ASSERT_TRUE(hasGone(samples));
    EXPECT_LE(largestRelapse(samples, -1), rounding);
    EXPECT_GE(stepsBetween(samples), 4U);
    EXPECT_GE(fadeLength(samples), 110ms);
    EXPECT_LE(fadeLength(samples), 360ms);
    EXPECT_TRUE(std::ranges::all_of(tops(samples), [](int top) { return top == card.y; }));
}

TEST_P(BlendedBannerMotion, dismissalWhileTheBannerComesLetsItNeverGrowBrighterAgain) {
    // A little above the cross's last place, so that the button is there on the way too. The pointer comes to
    // it with the click: a button that comes to the pointer takes none at first.
    const Banner place{0, BannerKind::waiting, card, card, true};
    Rect cross = closeButton(place);
    cross.y -= slide / 2;
    const auto waitElsewhere = [this] { desktop.point({10, 700, 2, 2}); };
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        waitElsewhere();
        raise();
        std::unique_ptr<ChildProcess> click;
        const Samples samples = record([&](const Samples& seen) {
            if (!click && seen.back().opacity > 0.15)
                click = desktop.run({"xdotool", "mousemove", std::to_string(cross.middleX()),
                                     std::to_string(cross.middleY()), "click", "1"},
                                    "xdotool");
            return click && (hasGone(seen) || stands(seen));
        });
        const auto brightest = std::ranges::max_element(samples, {}, &FadeSample::opacity);
        if (hasGone(samples) && brightest->opacity < 1 - 3 * rounding && brightest->opacity > 3 * rounding) {
            EXPECT_LE(largestRelapse({brightest, samples.end()}, -1), rounding);
            EXPECT_TRUE(std::ranges::is_sorted(tops(samples)));
            EXPECT_TRUE(desktop.shows(0, 0));
            return;
        }
        // The click came too late, and may have closed the banner or missed it.
        resolve();
        ASSERT_TRUE(desktop.shows(0, 0));
    }
    FAIL() << "no click came while the banner faded in";
}

INSTANTIATE_TEST_SUITE_P(Desktops, BannerMotion, testing::Values(Compositor::none, Compositor::picom),
                         [](const auto& compositor) {
                             return compositor.param == Compositor::none ? "withoutCompositor"
                                                                         : "withCompositor";
                         });
INSTANTIATE_TEST_SUITE_P(Desktops, BlendedBannerMotion, testing::Values(Compositor::picom),
                         [](const auto&) { return "withCompositor"; });

} // namespace

} // namespace corvane::test
