#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSAppearance;
@class NSRunningApplication;
@class NSWindow;
@protocol NSApplicationDelegate;

// The appearance

typedef NSString* NSAppearanceName;
extern NSAppearanceName const NSAppearanceNameAqua API_AVAILABLE(macos(10.9));
extern NSAppearanceName const NSAppearanceNameDarkAqua API_AVAILABLE(macos(10.14));
extern NSAppearanceName const NSAppearanceNameVibrantDark API_AVAILABLE(macos(10.10));
extern NSAppearanceName const NSAppearanceNameVibrantLight API_AVAILABLE(macos(10.10));

API_AVAILABLE(macos(10.9))
@interface NSAppearance : NSObject
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)appearances
    API_AVAILABLE(macos(10.14));
@end

// The application

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited
};

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
    NSApplicationActivateAllWindows = 1 << 0,
};

extern NSNotificationName NSApplicationDidChangeScreenParametersNotification;

@interface NSApplication : NSObject
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(getter=isActive, readonly) BOOL active;
@property(readonly, copy) NSArray<NSWindow*>* windows;
- (NSApplicationActivationPolicy)activationPolicy;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activate API_AVAILABLE(macos(14.0));
// Marked for deprecation in a future version, of which compilers do not warn yet.
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)yieldActivationToApplication:(NSRunningApplication*)application API_AVAILABLE(macos(14.0));
@property(nullable, strong) NSAppearance* appearance API_AVAILABLE(macos(10.14));
@property(readonly, strong) NSAppearance* effectiveAppearance API_AVAILABLE(macos(10.14));
@end

extern __kindof NSApplication* _Null_unspecified NSApp;

@protocol NSApplicationDelegate <NSObject>
@optional
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows;
@end

// Other applications

API_AVAILABLE(macos(10.6))
@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(readonly) int processIdentifier;
@property(readonly, getter=isActive) BOOL active;
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options API_AVAILABLE(macos(14.0));
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@end

extern NSNotificationName
    NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification API_AVAILABLE(macos(10.10));

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication API_AVAILABLE(macos(10.7));
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion API_AVAILABLE(macos(10.12));
@property(readonly) BOOL accessibilityDisplayShouldIncreaseContrast API_AVAILABLE(macos(10.10));
- (BOOL)openURL:(NSURL*)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)fileURLs API_AVAILABLE(macos(10.6));
@end

// Assistive technology

typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityNotificationUserInfoKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) {
    NSAccessibilityPriorityLow = 10,
    NSAccessibilityPriorityMedium = 50,
    NSAccessibilityPriorityHigh = 90
} API_AVAILABLE(macos(10.10));

extern NSAccessibilityNotificationName const
    NSAccessibilityAnnouncementRequestedNotification API_AVAILABLE(macos(10.7));
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey API_AVAILABLE(macos(10.7));
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey API_AVAILABLE(macos(10.9));

extern "C" void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo) API_AVAILABLE(macos(10.7));

// Sounds

typedef NSString* NSSoundName;

@interface NSSound : NSObject
+ (nullable NSSound*)soundNamed:(NSSoundName)name;
- (BOOL)play;
- (BOOL)stop;
@property(readonly, getter=isPlaying) BOOL playing;
@end

NS_ASSUME_NONNULL_END
