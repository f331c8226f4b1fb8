#include "Platform/MacOS/StatusItem.h"

#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/Screens.h"
#include "Style/StatusIcon.h"

#include <QMetaObject>

#import <AppKit/AppKit.h>
#include <algorithm>

@interface CorvaneStatusTarget : NSObject
@property(nonatomic, copy) void (^onPress)(void);
- (void)pressed:(id)sender;
@end

@implementation CorvaneStatusTarget

// Does not use the current event: assistive technology presses without one.
- (void)pressed:(id)sender {
    if (self.onPress) self.onPress();
}

@end

namespace corvane {

namespace {

/// A template, so that the system draws it in the colour of the menu bar's text.
NSImage* bell(int waitingCount) {
    NSString* const name = waitingCount > 0 ? @"bell.badge.fill" : @"bell";
    if (NSImage* const symbol = [NSImage imageWithSystemSymbolName:name accessibilityDescription:nil])
        return symbol;
    constexpr int side = 16;
    constexpr int largestScale = 2;
    const int badges = std::min(waitingCount, 1); // the number is beside it
    const QImage picture = statusicon::image(side * largestScale, badges, ColorScheme::light);
    CGImageRef const pixels = picture.toCGImage();
    NSImage* const image = [[NSImage alloc] initWithCGImage:pixels size:NSMakeSize(side, side)];
    CGImageRelease(pixels);
    [image setTemplate:YES];
    return image;
}

/// From the button's window, which on macOS 26 is where the item is on the screen, whatever the button's own
/// frame.
QRect placeOf(NSStatusBarButton* button) {
    NSWindow* const window = button.window;
    if (!window) return {};
    const NSRect rect = window.frame;
    return geometry::fromNative({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height},
                                desktopTop());
}

} // namespace

struct MacStatusItem::Parts {
    NSStatusItem* item = nil; // removed from the bar when released
    CorvaneStatusTarget* target = nil;
};

MacStatusItem::MacStatusItem()
    : parts_(std::make_unique<Parts>()) {}

MacStatusItem::~MacStatusItem() {
    parts_->target.onPress = nil;
    if (parts_->item) [NSStatusBar.systemStatusBar removeStatusItem:parts_->item];
}

void MacStatusItem::show(int waitingCount, const QString& label, const QString& toolTip) {
    if (!parts_->item) {
        parts_->item = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
        parts_->target = [CorvaneStatusTarget new];
        // Deferred: on macOS 27 the button takes the keyboard focus on mouse down, and a panel opened before
        // that would lose it and close.
        parts_->target.onPress = ^{
          QMetaObject::invokeMethod(
              this, [this] { Q_EMIT pressed(place()); }, Qt::QueuedConnection);
        };
        NSStatusBarButton* const button = parts_->item.button;
        button.target = parts_->target;
        button.action = @selector(pressed:);
        // On mouse down rather than mouse up, like a menu.
        [button sendActionOn:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown];
    }
    NSStatusBarButton* const button = parts_->item.button;
    const bool hasCount = waitingCount >= 2;
    button.image = bell(waitingCount);
    button.title = hasCount ? QString::number(waitingCount).toNSString() : @"";
    button.imagePosition = hasCount ? NSImageLeading : NSImageOnly;
    button.imageHugsTitle = YES;
    button.toolTip = toolTip.toNSString();
    [button setAccessibilityLabel:label.toNSString()];
}

void MacStatusItem::setMenu(QMenu* /*menu*/) {}

QRect MacStatusItem::place() const {
    return parts_->item ? placeOf(parts_->item.button) : QRect();
}

void* MacStatusItem::handle() const {
    return (__bridge void*)parts_->item;
}

} // namespace corvane
