#pragma once

#include <Availability.h>
#include <CoreGraphics/CoreGraphics.h>
#include <TargetConditionals.h>
#include <dispatch/dispatch.h>

// As in C++ on macOS: an enumeration is a distinct type, a set of options is its integer.
#define NS_ENUM(type, name)                                                                                  \
    enum name : type name;                                                                                   \
    enum name : type
#define NS_OPTIONS(type, name)                                                                               \
    type name;                                                                                               \
    enum __attribute__((flag_enum)) : type
#define NS_NOESCAPE __attribute__((noescape))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_RETURNS_AUTORELEASED __attribute__((ns_returns_autoreleased))

#define nil nullptr
#define YES __objc_yes
#define NO __objc_no

// A character on Intel processors, a boolean on Apple's.
typedef signed char BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    return {x, y};
}
inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
    return {width, height};
}
inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}
inline CGFloat NSMaxY(NSRect rect) {
    return rect.origin.y + rect.size.height;
}
inline BOOL NSEqualRects(NSRect a, NSRect b) {
    return a.origin.x == b.origin.x && a.origin.y == b.origin.y && a.size.width == b.size.width &&
           a.size.height == b.size.height;
}

NS_ASSUME_NONNULL_BEGIN

@class NSString;
@class NSMethodSignature;
struct _NSZone;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
- (instancetype)init;
+ (instancetype)new;
+ (instancetype)alloc;
+ (Class)class;
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

extern "C" Class _Nullable NSClassFromString(NSString* aClassName);

@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
@property(readonly) NSUInteger length;
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
@property(nullable, readonly) const char* UTF8String;
- (BOOL)isEqualToString:(NSString*)aString;
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value API_AVAILABLE(macos(10.5));
@property(readonly) int intValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying>
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
- (BOOL)containsObject:(ObjectType)anObject;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
@end

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSString* localizedDescription;
@property(readonly) NSInteger code;
@end

@interface NSURL : NSObject <NSCopying>
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(nullable, readonly, copy) NSString* path;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

@interface NSDate : NSObject <NSCopying>
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;
@property(readonly) NSTimeInterval timeIntervalSinceNow;
@end

typedef NSString* NSRunLoopMode;
extern NSRunLoopMode const NSDefaultRunLoopMode;

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* currentRunLoop;
- (BOOL)runMode:(NSRunLoopMode)mode beforeDate:(NSDate*)limitDate;
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@property(readonly, copy) NSNotificationName name;
@end

@class NSOperationQueue;

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)postNotificationName:(NSNotificationName)aName object:(nullable id)anObject;
- (void)removeObserver:(id)observer;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)obj
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block API_AVAILABLE(macos(10.6));
@end

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString*)object
                    userInfo:(nullable NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end

typedef NS_OPTIONS(unsigned long long, NSActivityOptions) {
    NSActivityIdleSystemSleepDisabled = (1ULL << 20),
    NSActivityUserInitiated = (0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled),
    NSActivityUserInitiatedAllowingIdleSystemSleep = (NSActivityUserInitiated &
                                                      ~NSActivityIdleSystemSleepDisabled),
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options
                                  reason:(NSString*)reason API_AVAILABLE(macos(10.9));
- (void)endActivity:(id<NSObject>)activity API_AVAILABLE(macos(10.9));
@end

typedef NSString* NSKeyValueChangeKey;

typedef NS_OPTIONS(NSUInteger, NSKeyValueObservingOptions) {
    NSKeyValueObservingOptionNew = 0x01,
    NSKeyValueObservingOptionOld = 0x02,
};

@interface NSObject (NSKeyValueObserving)
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

@interface NSObject (NSKeyValueObserverRegistration)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath;
@end

NS_ASSUME_NONNULL_END
