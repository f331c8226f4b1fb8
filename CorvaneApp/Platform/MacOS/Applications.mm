#include "Platform/MacOS/Applications.h"

#include <QString>

#import <AppKit/AppKit.h>

namespace corvane {

void MacApplications::activate(const std::string& bundleID) {
    NSString* const identifier = QString::fromStdString(bundleID).toNSString();
    NSRunningApplication* const application =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier].firstObject;
    if (!application || [application activateWithOptions:0]) return;
    // Since macOS 14 the system may refuse that, yet let the application in front give way.
    if (@available(macOS 14.0, *)) {
        NSRunningApplication* const front = NSWorkspace.sharedWorkspace.frontmostApplication;
        if (front) [application activateFromApplication:front options:0];
    }
}

void MacApplications::activateTerminal(const std::string& /*agent*/, const std::string& /*directory*/) {}

} // namespace corvane
