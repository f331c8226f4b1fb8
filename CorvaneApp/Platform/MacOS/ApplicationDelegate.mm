#include "Platform/MacOS/ApplicationDelegate.h"

#import <AppKit/AppKit.h>

@interface CorvaneApplicationDelegate : NSObject <NSApplicationDelegate>
@end

// Nothing about the end of the application is answered here, so that Qt's orderly one stays.
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
        // The application holds it weakly.
        static CorvaneApplicationDelegate* const delegate = [CorvaneApplicationDelegate new];
        NSApplication.sharedApplication.delegate = delegate;
    }
}

} // namespace corvane
