#include "Platform/MacOS/Screens.h"

#include "Platform/MacOS/Geometry.h"

#import <AppKit/AppKit.h>

namespace corvane {

namespace {

QRect fromNative(NSRect frame) {
    return geometry::fromNative({frame.origin.x, frame.origin.y, frame.size.width, frame.size.height},
                                desktopTop());
}

} // namespace

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
    return fromNative(screen.visibleFrame);
}

std::optional<QRect> MacScreens::visibleFrameAt(QPoint place) const {
    for (NSScreen* const screen in NSScreen.screens) {
        if (fromNative(screen.frame).contains(place)) return fromNative(screen.visibleFrame);
    }
    NSScreen* const primary = NSScreen.screens.firstObject;
    return primary ? std::optional(fromNative(primary.visibleFrame)) : std::nullopt;
}

} // namespace corvane
