#include "MacSupport.h"
#include "Platform/MacOS/SingleInstance.h"
#include "Support/TestSupport.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>

namespace corvane {
namespace {

using test::holdsSoon;

class MacSingleInstanceTest : public testing::Test {
  protected:
    test::ScratchFolder scratch;
    MacSingleInstance instance{scratch / "made" / "folder"};
};

TEST_F(MacSingleInstanceTest, isNotifiedByQtsDelegateThatTheApplicationIsReopened) {
    ASSERT_TRUE(instance.claim());
    QSignalSpy spy(&instance, &SingleInstance::reopened);
    EXPECT_TRUE([NSApp.delegate applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]);
    EXPECT_TRUE(holdsSoon([&] { return spy.count() == 1; }));
}

TEST_F(MacSingleInstanceTest, staysWhenTheLastWindowIsClosed) {
    EXPECT_FALSE([NSApp.delegate applicationShouldTerminateAfterLastWindowClosed:NSApp]);
}

TEST_F(MacSingleInstanceTest, reopensTheFirstWhenAnotherStarts) {
    ASSERT_TRUE(instance.claim());
    QSignalSpy spy(&instance, &SingleInstance::reopened);
    MacSingleInstance second(scratch / "made" / "folder");
    EXPECT_FALSE(second.claim());
    // It has been delivered by then, since the second process ends at once.
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(MacSingleInstanceTest, releasesTheLockAtTheEnd) {
    { EXPECT_TRUE(MacSingleInstance(scratch / "made" / "folder").claim()); }
    EXPECT_TRUE(instance.claim());
}

TEST_F(MacSingleInstanceTest, isClaimedIfNoLockCanBeHeld) {
    test::writeFile(scratch / "file", "");
    MacSingleInstance unusable(scratch / "file" / "below");
    EXPECT_TRUE(unusable.claim());
}

} // namespace
} // namespace corvane
