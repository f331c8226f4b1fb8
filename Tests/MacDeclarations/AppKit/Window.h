#pragma once

#import <AppKit/View.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, readonly, nullable, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@end

@interface NSAnimationContext : NSObject
+ (void)runAnimationGroup:(void(NS_NOESCAPE ^)(NSAnimationContext* context))changes
    API_AVAILABLE(macos(10.12));
@property NSTimeInterval duration;
@end

@protocol NSAnimatablePropertyContainer
- (instancetype)animator;
@end

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorStationary API_AVAILABLE(macos(10.6)) = 1 << 4,
    NSWindowCollectionBehaviorIgnoresCycle API_AVAILABLE(macos(10.6)) = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary API_AVAILABLE(macos(10.7)) = 1 << 8,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
    NSBackingStoreBuffered = 2,
};

typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSStatusWindowLevel = 25;

@interface NSWindow : NSResponder <NSAnimatablePropertyContainer, NSAccessibility>
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag __attribute__((objc_designated_initializer));

@property(readonly) NSRect frame;
@property NSWindowStyleMask styleMask;
@property(readonly) NSBackingStoreType backingType;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(getter=isOpaque) BOOL opaque;
@property BOOL hasShadow;
@property CGFloat alphaValue;
@property BOOL hidesOnDeactivate;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property BOOL ignoresMouseEvents;
@property(nullable, strong) __kindof NSView* contentView;
@property(nullable, readonly, weak) NSResponder* firstResponder;

@property(getter=isVisible, readonly) BOOL visible;
@property(getter=isKeyWindow, readonly) BOOL keyWindow;
@property(readonly) BOOL canBecomeKeyWindow;
- (void)becomeKeyWindow;
- (void)resignKeyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;

- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
- (void)setFrameOrigin:(NSPoint)point;
- (void)invalidateShadow;
- (NSPoint)convertPointToScreen:(NSPoint)point API_AVAILABLE(macos(10.12));

- (void)orderFrontRegardless;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderOut:(nullable id)sender;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

NS_ASSUME_NONNULL_END
