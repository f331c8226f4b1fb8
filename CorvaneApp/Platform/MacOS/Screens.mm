#include "Platform/MacOS/Screens.h"

#include "Platform/MacOS/Geometry.h"

#import <AppKit/AppKit.h>

namespace corvane {

double desktopTop() {
    NSScreen* const first = NSScreen.screens.firstObject;
    return first ? NSMaxY(first.frame) : 0;
}

MacScreens::MacScreens()
    : parametersChange_(NotificationCenter::application,
                        QString::fromNSString(NSApplicationDidChangeScreenParametersNotification),
                        [this] { Q_EMIT changed(); }) {}

std::optional<QRect> MacScreens::mainVisibleFrame() const {
    NSScreen* const main = NSScreen.mainScreen;
    NSScreen* const screen = main ? main : NSScreen.screens.firstObject;
    if (!screen) return std::nullopt;
    const NSRect frame = screen.visibleFrame;
    return geometry::fromNative({frame.origin.x, frame.origin.y, frame.size.width, frame.size.height},
                                desktopTop());
}

} // namespace corvane
