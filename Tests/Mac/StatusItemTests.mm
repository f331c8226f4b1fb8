#include "MacSupport.h"
#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/Screens.h"
#include "Platform/MacOS/StatusItem.h"
#include "Style/StatusIcon.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>

namespace corvane {
namespace {

using test::holdsSoon;

class MacStatusItemTest : public testing::Test {
  protected:
    void show(int count) { item.show(count, statusicon::label(count), statusicon::label(count)); }
    [[nodiscard]] NSStatusItem* native() const { return (__bridge NSStatusItem*)item.handle(); }
    [[nodiscard]] QString title() const { return QString::fromNSString(native().button.title); }
    [[nodiscard]] QString label() const { return QString::fromNSString(native().button.accessibilityLabel); }

    MacStatusItem item;
};

TEST_F(MacStatusItemTest, isNotInTheBarBeforeItIsShown) {
    EXPECT_TRUE(native() == nil);
    EXPECT_TRUE(item.isAvailable());
}

TEST_F(MacStatusItemTest, isAsWideAsItNeedsToBe) {
    show(0);
    EXPECT_EQ(native().length, NSVariableStatusItemLength);
    ASSERT_TRUE(native().button != nil);
    EXPECT_TRUE([native().button.image isTemplate]);
}

TEST_F(MacStatusItemTest, hasNoNumberForNoneAndOne) {
    show(0);
    EXPECT_EQ(title(), QString());
    EXPECT_EQ(label(), QStringLiteral("Corvane"));
    EXPECT_EQ(native().button.imagePosition, NSImageOnly);
    NSImage* const plain = native().button.image;
    show(1);
    EXPECT_EQ(title(), QString());
    EXPECT_EQ(label(), QStringLiteral("1 agent waiting for you"));
    EXPECT_FALSE([native().button.image isEqual:plain]) << "the bell has its badge";
}

TEST_F(MacStatusItemTest, hasTheNumberBesideTheBellFromTwoOn) {
    show(3);
    EXPECT_EQ(title(), QStringLiteral("3"));
    EXPECT_EQ(label(), QStringLiteral("3 agents waiting for you"));
    EXPECT_EQ(native().button.imagePosition, NSImageLeading);
    EXPECT_EQ(QString::fromNSString(native().button.toolTip), label());
    show(0);
    EXPECT_EQ(title(), QString());
    EXPECT_EQ(native().button.imagePosition, NSImageOnly);
}

TEST_F(MacStatusItemTest, reportsWhereItWasPressed) {
    show(2);
    ASSERT_TRUE(holdsSoon([this] { return native().button.window != nil; }));
    QSignalSpy presses(&item, &StatusItem::pressed);
    // As assistive technology does, without an event.
    [native().button performClick:nil];
    EXPECT_EQ(presses.count(), 0) << "the press itself is delivered first";
    ASSERT_TRUE(holdsSoon([&] { return presses.count() == 1; }));
    const NSRect window = native().button.window.frame;
    EXPECT_EQ(presses.at(0).at(0).toRect(),
              geometry::fromNative({window.origin.x, window.origin.y, window.size.width, window.size.height},
                                   desktopTop()));
    EXPECT_FALSE(NSApp.active);
}

} // namespace
} // namespace corvane
