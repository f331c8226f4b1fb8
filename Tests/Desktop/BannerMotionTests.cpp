// How banners appear and disappear, frame by frame as the screen shows it.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/FadeRecord.h"

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

    using Judgement = std::function<std::optional<std::string>(const Samples&)>;

    /// Expects a banner to appear without a fault. A faulty attempt that a busy machine has disturbed does
    /// not count: the banner is dismissed and shown again.
    void expectShowing(const Judgement& fault) {
        for (int attempt = 1;; ++attempt) {
            raise();
            const Samples samples = record(isShown);
            if (isDecided(samples, fault, attempt)) return;
            resolve();
            ASSERT_TRUE(desktop.shows(0, 0));
        }
    }
    /// The same for a banner that disappears.
    void expectHiding(const Judgement& fault) {
        for (int attempt = 1;; ++attempt) {
            raise();
            ASSERT_TRUE(isShown(record(isShown))) << "it was not shown";
            resolve();
            const Samples samples = record(isHidden);
            if (isDecided(samples, fault, attempt)) return;
            ASSERT_TRUE(desktop.shows(0, 0));
        }
    }
    static bool isDecided(const Samples& samples, const Judgement& fault, int attempt) {
        const std::optional<std::string> wrong = fault(samples);
        if (wrong && attempt < mostAttempts && !isUndisturbed(samples)) return false;
        EXPECT_EQ(wrong, std::nullopt) << "at attempt " << attempt;
        return true;
    }

    static bool isShown(const Samples& samples) {
        const FadeSample& last = samples.back();
        return last.isMapped && last.top == card.y && last.opacity >= 1 - rounding;
    }
    static bool isHidden(const Samples& samples) { return !samples.back().isMapped; }

    static constexpr int mostAttempts = 20;

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

std::string milliseconds(std::chrono::milliseconds time) {
    return std::to_string(time.count()) + " ms";
}

TEST_P(BannerMotion, bannerSlidesDownToItsPlaceAndStaysThere) {
    expectShowing([](const Samples& samples) -> std::optional<std::string> {
        const std::vector<int> seen = tops(samples);
        if (!isShown(samples)) return "it does not reach its place";
        if (!std::ranges::is_sorted(seen)) return "it moves up";
        if (seen.front() < card.y - slide) return "it begins too high";
        if (seen.front() > card.y - slide / 2) return "it was not seen on its way";
        return std::nullopt;
    });
    EXPECT_TRUE(desktop.shows(1, 0));
}

// Only where windows are blended can a banner fade.
class BlendedBannerMotion : public BannerMotion {
  protected:
    static std::optional<std::string> fadeFault(const Samples& samples, int direction,
                                                std::chrono::milliseconds least,
                                                std::chrono::milliseconds most) {
        if (largestRelapse(samples, direction) > rounding) return "its opacity is not monotone";
        if (stepsBetween(samples) < 4) return std::to_string(stepsBetween(samples)) + " steps";
        const std::chrono::milliseconds length = fadeLength(samples);
        if (length < least || length > most) return milliseconds(length);
        return std::nullopt;
    }
};

TEST_P(BlendedBannerMotion, opacityRisesSteadilyWhileTheBannerAppears) {
    expectShowing([](const Samples& samples) -> std::optional<std::string> {
        if (!isShown(samples)) return "it does not reach its place";
        return fadeFault(samples, +1, 150ms, 400ms);
    });
}

TEST_P(BlendedBannerMotion, opacityFallsSteadilyInPlaceWhileTheBannerDisappears) {
    expectHiding([](const Samples& samples) -> std::optional<std::string> {
        if (!isHidden(samples)) return "it does not disappear";
        if (!std::ranges::all_of(tops(samples), [](int top) { return top == card.y; })) return "it moves";
        return fadeFault(samples, -1, 110ms, 360ms);
    });
}

TEST_P(BlendedBannerMotion, opacityNeverRisesAgainAfterADismissalDuringTheFadeIn) {
    // A little above the cross's last place, so that the button is there during the slide too. The pointer
    // moves there with the click: a button that appears under the pointer ignores presses at first.
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
            return click && (isHidden(seen) || isShown(seen));
        });
        const auto brightest = std::ranges::max_element(samples, {}, &FadeSample::opacity);
        if (isHidden(samples) && brightest->opacity < 1 - 3 * rounding && brightest->opacity > 3 * rounding) {
            EXPECT_LE(largestRelapse({brightest, samples.end()}, -1), rounding);
            EXPECT_TRUE(std::ranges::is_sorted(tops(samples)));
            EXPECT_TRUE(desktop.shows(0, 0));
            return;
        }
        // The click was too late, and may have closed the banner or missed it.
        resolve();
        ASSERT_TRUE(desktop.shows(0, 0));
    }
    FAIL() << "no click arrived while the banner faded in";
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
