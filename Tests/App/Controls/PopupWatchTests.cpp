#include "Controls/PopupWatch.h"

#include <QMenu>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace corvane {
namespace {

class PopupWatchTest : public testing::Test {
  protected:
    PopupWatchTest() {
        QObject::connect(&watch, &PopupWatch::changed, &watch, [this] { ++changes; });
        menu.addAction(QStringLiteral("Entry"));
    }

    [[nodiscard]] std::vector<QWidget*> open() const {
        std::vector<QWidget*> windows;
        for (const OpenPopup& popup : watch.open())
            windows.push_back(popup.window);
        return windows;
    }

    PopupWatch watch;
    QMenu menu;
    int changes = 0;
};

TEST_F(PopupWatchTest, anOpenMenuIsIncluded) {
    EXPECT_TRUE(open().empty());
    menu.popup({100, 100});
    EXPECT_EQ(open(), std::vector<QWidget*>{&menu});
    EXPECT_GT(changes, 0);
    changes = 0;
    menu.close();
    EXPECT_TRUE(open().empty());
    EXPECT_EQ(changes, 1);
}

TEST_F(PopupWatchTest, aMenuThatMovesIsReported) {
    menu.popup({100, 100});
    changes = 0;
    menu.move(200, 100);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(open(), std::vector<QWidget*>{&menu});
    EXPECT_EQ(watch.open().front().place, menu.geometry());
}

TEST_F(PopupWatchTest, otherWindowsAreIncludedOnlyOnceAdded) {
    QWidget window;
    window.show();
    EXPECT_TRUE(open().empty());
    window.hide();
    watch.add(window, [] { return QRect(1, 2, 3, 4); });
    window.show();
    EXPECT_EQ(open(), std::vector<QWidget*>{&window});
    EXPECT_EQ(watch.open().front().place, QRect(1, 2, 3, 4));
    window.hide();
    EXPECT_TRUE(open().empty());
}

TEST_F(PopupWatchTest, aWindowDestroyedWhileOpenIsRemoved) {
    auto other = std::make_unique<QMenu>();
    other->addAction(QStringLiteral("Entry"));
    other->popup({100, 100});
    ASSERT_EQ(open().size(), 1U);
    other.reset();
    EXPECT_TRUE(open().empty());
}

} // namespace
} // namespace corvane
