#include "Platform/Activation.h"

#import <AppKit/AppKit.h>

namespace corvane {

// The system goes to the space of a window that becomes active.
void bringToUsersWorkspace(const QWidget& /*window*/) {}

void activateApplication() {
    if (NSApp.active) return;
    if (@available(macOS 14.0, *)) [NSApp activate];
    // The request above may be declined without a word, and leaves the window behind then; macOS 13 has none.
    // The older call still works where it is deprecated.
    dispatch_async(dispatch_get_main_queue(), ^{
      if (NSApp.active) return;
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
      [NSApp activateIgnoringOtherApps:YES];
#pragma clang diagnostic pop
    });
}

} // namespace corvane
