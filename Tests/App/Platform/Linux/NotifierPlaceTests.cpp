#include "Platform/Linux/NotifierPlace.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace corvane {
namespace {

const std::vector<QRect> screens{{0, 0, 1280, 800}, {1280, 0, 1920, 1080}};

TEST(NotifierPlace, isAroundTheClick) {
    EXPECT_EQ(notifierPlace({1000, 790}, std::nullopt, 1, screens), QRect(988, 778, 24, 24));
    EXPECT_EQ(notifierPlace({3000, 10}, QPoint(5, 5), 1, screens), QRect(2988, -2, 24, 24));
}

TEST(NotifierPlace, isUnknownIfTheHostDoesNotReportIt) {
    EXPECT_TRUE(notifierPlace({0, 0}, std::nullopt, 1, screens).isEmpty());
    EXPECT_TRUE(notifierPlace({0, 0}, QPoint(700, 400), 1, screens).isEmpty());
    EXPECT_TRUE(notifierPlace({-5, 20}, std::nullopt, 1, screens).isEmpty());
    EXPECT_TRUE(notifierPlace({100, 900}, std::nullopt, 1, screens).isEmpty()) << "below the first screen";
}

TEST(NotifierPlace, ignoresBarRelativePositionsOnWayland) {
    EXPECT_TRUE(notifierPlaceIsKnown(false, "sway"));
    EXPECT_TRUE(notifierPlaceIsKnown(false, ""));
    EXPECT_TRUE(notifierPlaceIsKnown(true, "KDE"));
    EXPECT_TRUE(notifierPlaceIsKnown(true, "ubuntu:GNOME"));
    EXPECT_FALSE(notifierPlaceIsKnown(true, "sway"));
    EXPECT_FALSE(notifierPlaceIsKnown(true, ""));
}

TEST(NotifierPlace, ignoresThePositionThatMatesBarReports) {
    EXPECT_FALSE(notifierPlaceIsKnown(false, "MATE"));
    EXPECT_FALSE(notifierPlaceIsKnown(true, "MATE"));
}

TEST(NotifierPlace, isAtThePointerOnlyIfThatIsOnABar) {
    const std::vector<QRect> bars{{0, 0, 2560, 56}, {0, 1560, 2560, 40}};
    EXPECT_EQ(notifierPlaceOnBar({1113, 14}, 2, bars), QRect(1101, 2, 24, 24));
    EXPECT_EQ(notifierPlaceOnBar({1113, 785}, 2, bars), QRect(1101, 773, 24, 24));
    EXPECT_TRUE(notifierPlaceOnBar({1113, 40}, 2, bars).isEmpty());
    EXPECT_TRUE(notifierPlaceOnBar({1113, 14}, 2, {}).isEmpty());
}

TEST(NotifierPlace, isInTheUnitThatThePointerConfirms) {
    EXPECT_EQ(notifierPlace({1200, 30}, QPoint(601, 15), 2, screens).center(), QPoint(599, 14));
    EXPECT_EQ(notifierPlace({600, 15}, QPoint(601, 15), 2, screens).center(), QPoint(599, 14));
    EXPECT_EQ(notifierPlace({600, 15}, std::nullopt, 2, screens).center(), QPoint(599, 14));
}

} // namespace
} // namespace corvane
