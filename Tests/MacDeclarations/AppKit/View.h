#pragma once

#import <AppKit/Image.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSWindow;
@class NSEvent;

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskOtherMouseDown = 1ULL << 25,
};

@interface NSEvent : NSObject <NSCopying>
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent* event))block
    API_AVAILABLE(macos(10.6));
+ (void)removeMonitor:(id)eventMonitor API_AVAILABLE(macos(10.6));
@property(readonly) NSPoint locationInWindow;
@end

typedef NS_OPTIONS(NSUInteger, NSTrackingAreaOptions) {
    NSTrackingMouseEnteredAndExited = 0x01,
    NSTrackingMouseMoved = 0x02,
    NSTrackingActiveAlways = 0x80,
    NSTrackingInVisibleRect = 0x200,
};

API_AVAILABLE(macos(10.5))
@interface NSTrackingArea : NSObject <NSCopying>
- (instancetype)initWithRect:(NSRect)rect
                     options:(NSTrackingAreaOptions)options
                       owner:(nullable id)owner
                    userInfo:(nullable NSDictionary*)userInfo;
@property(readonly) NSTrackingAreaOptions options;
@property(nullable, readonly, weak) id owner;
@end

@interface NSResponder : NSObject
- (void)mouseMoved:(NSEvent*)event;
- (void)mouseEntered:(NSEvent*)event;
- (void)mouseExited:(NSEvent*)event;
@end

// Only the part of the protocol that is used with views and windows here.
@protocol NSAccessibility <NSObject>
@property(nullable, copy) NSString* accessibilityLabel API_AVAILABLE(macos(10.10));
@end

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
    NSViewNotSizable = 0,
};

@interface NSView : NSResponder <NSAccessibility>
- (instancetype)initWithFrame:(NSRect)frameRect;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@property(nullable, readonly, unsafe_unretained) NSView* superview;
@property(copy) NSArray<__kindof NSView*>* subviews;
@property NSRect frame;
@property NSRect bounds;
@property(getter=isHidden) BOOL hidden;
@property NSAutoresizingMaskOptions autoresizingMask;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
- (NSPoint)convertPoint:(NSPoint)point fromView:(nullable NSView*)view;
- (void)addTrackingArea:(NSTrackingArea*)trackingArea API_AVAILABLE(macos(10.5));
@property(readonly, copy) NSArray<NSTrackingArea*>* trackingAreas API_AVAILABLE(macos(10.5));
@property(nullable, copy) NSString* toolTip;
@end

typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) {
    NSVisualEffectMaterialPopover API_AVAILABLE(macos(10.11)) = 6,
};

typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
    NSVisualEffectBlendingModeBehindWindow,
    NSVisualEffectBlendingModeWithinWindow,
};

typedef NS_ENUM(NSInteger, NSVisualEffectState) {
    NSVisualEffectStateFollowsWindowActiveState,
    NSVisualEffectStateActive,
    NSVisualEffectStateInactive,
};

API_AVAILABLE(macos(10.10))
@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@property(nullable, retain) NSImage* maskImage;
@end

typedef NS_ENUM(NSUInteger, NSCellImagePosition) {
    NSNoImage = 0,
    NSImageOnly = 1,
    NSImageLeft = 2,
    NSImageLeading API_AVAILABLE(macos(10.12)) = 7,
    NSImageTrailing API_AVAILABLE(macos(10.12)) = 8
};

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end

@interface NSButton : NSControl
@property(copy) NSString* title;
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@property BOOL imageHugsTitle API_AVAILABLE(macos(10.12));
- (void)performClick:(nullable id)sender;
@end

// The menu bar

static const CGFloat NSVariableStatusItemLength = -1;

API_AVAILABLE(macos(10.10))
@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button API_AVAILABLE(macos(10.10));
@property CGFloat length;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

NS_ASSUME_NONNULL_END
