#include "MacSupport.h"
#include "Platform/MacOS/BannerPanel.h"
#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/Screens.h"

#include <QPointer>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>
#include <chrono>

namespace corvane {
namespace {

using std::chrono::milliseconds;
using test::holdsSoon;

constexpr QSize waitingSize{520, 96};
constexpr QSize doneSize{360, 64};
constexpr QPoint place{200, 100};
constexpr milliseconds fading{220};

class MacPanel : public testing::Test {
  protected:
    void SetUp() override {
        setCard(waitingSize);
        panel->setOrigin(place);
    }

    test::PlainCard* setCard(QSize size) {
        auto card = std::make_unique<test::PlainCard>();
        test::PlainCard* const result = card.get();
        panel->setContent(std::move(card), size);
        return result;
    }

    [[nodiscard]] NSPanel* native() const { return (__bridge NSPanel*)nativeHandle(*panel); }

    /// Where the panel is, in Qt's coordinates.
    [[nodiscard]] QRect frame() const {
        const NSRect rect = native().frame;
        return geometry::fromNative({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height},
                                    desktopTop());
    }

    MacBannerPanels panels;
    std::unique_ptr<BannerPanel> panel = panels.make();
};

TEST_F(MacPanel, hasTheTraitsOfABanner) {
    EXPECT_EQ(native().styleMask, 128U);
    EXPECT_EQ(native().backingType, 2U);
    EXPECT_TRUE(native().floatingPanel);
    EXPECT_EQ(native().level, 25);
    EXPECT_EQ(native().collectionBehavior, 337U);
    EXPECT_TRUE([native().backgroundColor isEqual:NSColor.clearColor]);
    EXPECT_FALSE(native().opaque);
    EXPECT_TRUE(native().hasShadow);
    EXPECT_FALSE(native().hidesOnDeactivate);
    EXPECT_FALSE(native().releasedWhenClosed);
    EXPECT_FALSE(native().becomesKeyOnlyIfNeeded);
    EXPECT_TRUE(native().canBecomeKeyWindow);
    EXPECT_EQ(QString::fromNSString(native().accessibilityLabel), QStringLiteral("Corvane"));
}

TEST_F(MacPanel, keepsItsTraitsWhenItIsShownAndRefreshed) {
    panel->fadeIn(fading, 0);
    setCard(doneSize);
    EXPECT_TRUE(holdsSoon([this] { return native().alphaValue == 1; }));
    EXPECT_EQ(native().styleMask, 128U);
    EXPECT_EQ(native().level, 25);
    EXPECT_EQ(native().collectionBehavior, 337U);
}

TEST_F(MacPanel, carriesTheViewOnMaterialOfTheCardsShape) {
    ASSERT_TRUE([native().contentView isKindOfClass:[NSVisualEffectView class]]);
    NSVisualEffectView* const card = native().contentView;
    EXPECT_EQ(card.state, NSVisualEffectStateActive);
    EXPECT_EQ(card.blendingMode, NSVisualEffectBlendingModeBehindWindow);
    EXPECT_EQ(card.maskImage.size.width, waitingSize.width());
    EXPECT_EQ(card.maskImage.size.height, waitingSize.height());
    ASSERT_EQ(card.subviews.count, 1U);
    EXPECT_TRUE(NSEqualRects(card.subviews.firstObject.frame, card.bounds));
    EXPECT_FALSE(card.subviews.firstObject.hidden);
}

TEST_F(MacPanel, isWhereItIsPlaced) {
    EXPECT_EQ(frame(), QRect(place, waitingSize));
    panel->setOrigin({300, 250});
    EXPECT_EQ(frame(), QRect(QPoint(300, 250), waitingSize));
}

TEST_F(MacPanel, isShownWithoutActivatingTheApplicationOrTakingTheKeyboard) {
    ASSERT_FALSE(NSApp.active);
    panel->fadeIn(fading, 12);
    EXPECT_TRUE(native().visible);
    EXPECT_LT(native().alphaValue, 1);
    EXPECT_TRUE(holdsSoon([this] { return native().alphaValue == 1 && frame().topLeft() == place; }));
    EXPECT_FALSE(NSApp.active);
    EXPECT_FALSE(native().keyWindow);
}

TEST_F(MacPanel, slidesToThePlaceThatItIsGivenMeanwhile) {
    panel->fadeIn(fading, 12);
    EXPECT_EQ(frame().top(), place.y() - 12);
    panel->setOrigin(place + QPoint(0, 104));
    // Long after both animations, so that a late change of theirs would be seen.
    QTest::qWait(600);
    EXPECT_EQ(frame().topLeft(), place + QPoint(0, 104));
    EXPECT_EQ(native().alphaValue, 1);
}

TEST_F(MacPanel, doesNotMoveWhenItOnlyFades) {
    panel->fadeIn(fading, 0);
    EXPECT_EQ(frame().topLeft(), place);
    EXPECT_TRUE(holdsSoon([this] { return native().alphaValue == 1; }));
    EXPECT_EQ(frame().topLeft(), place);
}

TEST_F(MacPanel, takesNoClicksWhileItFadesOut) {
    panel->fadeIn(fading, 0);
    EXPECT_FALSE(native().ignoresMouseEvents);
    panel->fadeOut(milliseconds(180));
    EXPECT_TRUE(native().ignoresMouseEvents);
    EXPECT_TRUE(native().visible);
    EXPECT_TRUE(holdsSoon([this] { return native().alphaValue == 0; }));
    panel->orderOut();
    EXPECT_FALSE(native().visible);
}

TEST_F(MacPanel, isRefreshedInPlaceAndDestroysTheOldViewLater) {
    const QPointer<QWidget> old = setCard(waitingSize);
    panel->fadeIn(fading, 0);
    const QPointer<QWidget> fresh = setCard(doneSize);
    EXPECT_FALSE(old.isNull()) << "it may be in the middle of a handler";
    EXPECT_EQ(frame(), QRect(place, doneSize));
    EXPECT_EQ(native().contentView.subviews.count, 1U);
    EXPECT_TRUE(holdsSoon([&] { return old.isNull(); }));
    EXPECT_FALSE(fresh.isNull());
    EXPECT_EQ(fresh->size(), doneSize);
    EXPECT_TRUE(native().visible);
}

TEST_F(MacPanel, staysHiddenWhenItIsRaised) {
    panel->orderFront();
    EXPECT_FALSE(native().visible);
}

TEST_F(MacPanel, takesTheKeyboardWithoutActivatingTheApplication) {
    panel->fadeIn(fading, 0);
    [native() makeKeyAndOrderFront:nil];
    EXPECT_TRUE(holdsSoon([this] { return native().keyWindow; }));
    EXPECT_FALSE(NSApp.active);
    EXPECT_TRUE(native().firstResponder == native().contentView.subviews.firstObject);
}

TEST(MacPanelDeathTest, hasNoOtherInitialiser) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Class const panelClass = NSClassFromString(@"BannerPanel");
    ASSERT_TRUE(panelClass != nil);
    EXPECT_DEATH(static_cast<void>([[panelClass alloc] initWithContentRect:NSMakeRect(0, 0, 1, 1)
                                                                 styleMask:NSWindowStyleMaskBorderless
                                                                   backing:NSBackingStoreBuffered
                                                                     defer:NO]),
                 "BannerPanel");
}

} // namespace
} // namespace corvane
