#include "Platform/MacOS/ApplicationDelegate.h"

#import <AppKit/AppKit.h>

@interface CorvaneApplicationDelegate : NSObject <NSApplicationDelegate>
@end

// Does not implement termination, so that Qt's orderly one applies.
@implementation CorvaneApplicationDelegate

- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)visible {
    [NSNotificationCenter.defaultCenter postNotificationName:@(corvane::reopenNotification) object:nil];
    return YES;
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
    return NO;
}

@end

namespace corvane {

void installApplicationDelegate() {
    @autoreleasepool {
        // The application holds its delegate weakly.
        static CorvaneApplicationDelegate* const delegate = [CorvaneApplicationDelegate new];
        NSApplication.sharedApplication.delegate = delegate;
    }
}

} // namespace corvane
