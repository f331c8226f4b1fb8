#include "App/Support/Sessions.h"
#include "BannerController.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace corvane {
namespace {

using recording::RecordingPlatform;
using test::waitingSession;

TEST(BannerMoves, noCardOverlapsAnotherBetweenTwoMoves) {
    RecordingPlatform platform;
    BannerController controller{platform.services()};
    int moves = 0;
    platform.panels.moved = [&] {
        ++moves;
        std::vector<QRect> places;
        for (const auto& panel : platform.panels.all) {
            if (panel->isVisible && !panel->isFadingOut) places.emplace_back(panel->origin, panel->size);
        }
        for (auto place = places.begin(); place != places.end(); ++place) {
            EXPECT_TRUE(std::none_of(std::next(place), places.end(),
                                     [&](const QRect& other) { return other.intersects(*place); }))
                << "after move " << moves;
        }
    };
    controller.showWaiting(waitingSession("a", platform.time.now()));
    controller.showWaiting(waitingSession("b", platform.time.now()));
    controller.showWaiting(waitingSession("c", platform.time.now()));
    controller.dismiss("claude:c");
    controller.showWaiting(waitingSession("d", platform.time.now()));
    EXPECT_GT(moves, 10);
}

} // namespace
} // namespace corvane
