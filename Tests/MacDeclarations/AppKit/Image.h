#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSColor : NSObject <NSCopying>
@property(class, strong, readonly) NSColor* blackColor;
@property(class, strong, readonly) NSColor* clearColor;
- (void)set;
@end

@interface NSBezierPath : NSObject <NSCopying>
+ (NSBezierPath*)bezierPath;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)curveToPoint:(NSPoint)endPoint
       controlPoint1:(NSPoint)controlPoint1
       controlPoint2:(NSPoint)controlPoint2;
- (void)closePath;
- (void)fill;
@end

typedef CGFloat NSFontWeight;
extern const NSFontWeight NSFontWeightRegular API_AVAILABLE(macos(10.11));

typedef NS_ENUM(NSInteger, NSImageSymbolScale) {
    NSImageSymbolScaleSmall = 1,
    NSImageSymbolScaleMedium = 2,
    NSImageSymbolScaleLarge = 3,
} API_AVAILABLE(macos(11.0));

API_AVAILABLE(macos(11.0))
@interface NSImageSymbolConfiguration : NSObject <NSCopying>
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize
                                    weight:(NSFontWeight)weight
                                     scale:(NSImageSymbolScale)scale;
@end

@interface NSImage : NSObject <NSCopying>
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description API_AVAILABLE(macos(11.0));
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration
    API_AVAILABLE(macos(11.0));
+ (NSImage*)imageWithSize:(NSSize)size
                  flipped:(BOOL)drawingHandlerShouldBeCalledWithFlippedContext
           drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler API_AVAILABLE(macos(10.8));
- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size API_AVAILABLE(macos(10.6));
@property NSSize size;
// Under another name, since this one is a keyword in C++.
@property(getter=isTemplate, setter=setTemplate:) BOOL _template;
- (void)drawInRect:(NSRect)rect API_AVAILABLE(macos(10.9));
@end

@interface NSGraphicsContext : NSObject
@property(class, strong, nullable) NSGraphicsContext* currentContext;
+ (NSGraphicsContext*)graphicsContextWithCGContext:(CGContextRef)graphicsPort
                                           flipped:(BOOL)initialFlippedState API_AVAILABLE(macos(10.10));
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

NS_ASSUME_NONNULL_END
