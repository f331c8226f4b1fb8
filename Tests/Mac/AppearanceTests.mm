#include "MacSupport.h"
#include "Platform/MacOS/Appearance.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>

namespace corvane {
namespace {

using test::holdsSoon;

class MacAppearanceTest : public testing::Test {
  protected:
    void TearDown() override { NSApp.appearance = nil; }
    static void use(NSAppearanceName name) {
        NSAppearance* const wanted = [NSAppearance appearanceNamed:name];
        ASSERT_TRUE(wanted != nil); // without one the application would follow the system
        NSApp.appearance = wanted;
    }

    MacAppearance appearance;
};

TEST_F(MacAppearanceTest, isTheBestMatchOfLightAndDark) {
    use(NSAppearanceNameAqua);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);
    use(NSAppearanceNameDarkAqua);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
    // Neither of the two that can be requested. Those of high contrast cannot be requested by name at all.
    use(NSAppearanceNameVibrantDark);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
    use(NSAppearanceNameVibrantLight);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);
}

TEST_F(MacAppearanceTest, isFollowedWithoutAnyWindow) {
    use(NSAppearanceNameAqua);
    QSignalSpy changes(&appearance, &Appearance::changed);
    use(NSAppearanceNameDarkAqua);
    EXPECT_TRUE(holdsSoon([&] { return changes.count() > 0; }));
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
}

TEST_F(MacAppearanceTest, readsThePreferenceForMoreContrast) {
    const bool isHigh = NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
    EXPECT_EQ(appearance.contrast(), isHigh ? Contrast::high : Contrast::normal);
}

TEST_F(MacAppearanceTest, readsThePreferenceForReducedMotion) {
    EXPECT_EQ(appearance.reduceMotion(),
              static_cast<bool>(NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion));
}

} // namespace
} // namespace corvane
