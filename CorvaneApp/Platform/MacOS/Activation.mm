#include "Platform/MacOS/Activation.h"

#include <QWidget>

#import <AppKit/AppKit.h>

namespace corvane {

namespace {

void activateApplication() {
    if (NSApp.active) return;
    if (@available(macOS 14.0, *)) [NSApp activate];
    // The request above may be declined silently, which leaves the window behind others; macOS 13 lacks it.
    dispatch_async(dispatch_get_main_queue(), ^{
      if (!NSApp.active) [NSApp activateIgnoringOtherApps:YES];
    });
}

} // namespace

void MacActivation::present(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    activateApplication();
    window.raise();
    window.activateWindow();
}

} // namespace corvane
