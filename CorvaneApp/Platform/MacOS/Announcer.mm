#include "Platform/MacOS/Announcer.h"

#import <AppKit/AppKit.h>

namespace corvane {

void MacAnnouncer::announce(const QString& text) {
    if (!NSApp) return;
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* const information = @{
        NSAccessibilityAnnouncementKey : text.toNSString(),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityHigh),
    };
    NSAccessibilityPostNotificationWithUserInfo(NSApp, NSAccessibilityAnnouncementRequestedNotification,
                                                information);
}

} // namespace corvane
