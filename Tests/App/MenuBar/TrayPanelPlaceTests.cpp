#include "MenuBar/TrayPanel.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(TrayPanelPlace, isBelowABarAtTheTop) {
    EXPECT_EQ(panelOrigin({340, 200}, {600, 0, 24, 24}, {0, 30, 1280, 770}), QPoint(441, 34));
}

TEST(TrayPanelPlace, isAboveABarAtTheBottom) {
    EXPECT_EQ(panelOrigin({340, 200}, {600, 776, 24, 24}, {0, 0, 1280, 770}), QPoint(441, 566));
}

TEST(TrayPanelPlace, isBelowAMenuThatHasRoomThere) {
    EXPECT_EQ(panelOrigin({340, 200}, {600, 500, 40, 20}, {0, 30, 1280, 770}), QPoint(449, 524));
}

TEST(TrayPanelPlace, isBesideAVerticalBar) {
    EXPECT_EQ(panelOrigin({340, 200}, {2, 400, 24, 24}, {28, 0, 1252, 800}), QPoint(32, 311));
    EXPECT_EQ(panelOrigin({340, 200}, {1254, 400, 24, 24}, {0, 0, 1252, 800}), QPoint(908, 311));
}

TEST(TrayPanelPlace, isKeptOnTheScreen) {
    EXPECT_EQ(panelOrigin({340, 200}, {1257, 1, 22, 24}, {0, 30, 1280, 770}), QPoint(936, 34));
    EXPECT_EQ(panelOrigin({340, 200}, {2, 790, 1, 1}, {0, 0, 1280, 800}), QPoint(4, 586));
    EXPECT_EQ(panelOrigin({340, 200}, {640, 300, 1, 1}, {0, 0, 1280, 800}), QPoint(470, 305));
    EXPECT_EQ(panelOrigin({340, 900}, {640, 300, 1, 1}, {0, 0, 1280, 800}).y(), 4)
        << "too high for the screen";
}

TEST(TrayPanelPlace, ofAnUnknownIconIsAtTheTraysEndOfTheBar) {
    const QRect screen(0, 0, 1280, 800);
    const auto panel = [&screen](const QRect& available, Qt::LayoutDirection direction = Qt::LeftToRight) {
        return panelOrigin({340, 200}, expectedIcon(screen, available, direction), available);
    };
    EXPECT_EQ(panel({0, 30, 1280, 770}), QPoint(936, 34));
    EXPECT_EQ(panel({0, 0, 1280, 768}), QPoint(936, 564));
    EXPECT_EQ(panel({48, 0, 1232, 800}), QPoint(52, 596));
    EXPECT_EQ(panel({0, 0, 1232, 800}), QPoint(888, 596));
    EXPECT_EQ(panel({0, 30, 1280, 770}, Qt::RightToLeft), QPoint(4, 34));
    EXPECT_EQ(panel({0, 0, 1280, 768}, Qt::RightToLeft), QPoint(4, 564));
    EXPECT_EQ(panel(screen), QPoint(936, 5)) << "no bar is known";
    EXPECT_EQ(panel({0, 28, 1280, 744}), QPoint(936, 32)) << "of two, the upper one";
}

TEST(TrayPanelPlace, isOnTheScreenOfTheIcon) {
    EXPECT_EQ(panelOrigin({340, 200}, {-100, 0, 24, 24}, {-1280, 30, 1280, 770}), QPoint(-344, 34));
}

} // namespace
} // namespace corvane
