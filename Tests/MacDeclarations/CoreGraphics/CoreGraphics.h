#pragma once

#include <stddef.h>
#include <stdint.h>

typedef double CGFloat;
typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;
typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;
typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;

typedef const struct __CFString* CFStringRef;
typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct CGContext* CGContextRef;
typedef struct CGImage* CGImageRef;

typedef enum __attribute__((enum_extensibility(open))) CGImageAlphaInfo : uint32_t {
    kCGImageAlphaNone,
    kCGImageAlphaPremultipliedLast,
    kCGImageAlphaPremultipliedFirst,
} CGImageAlphaInfo;

// A set of options is its integer in C++.
typedef uint32_t CGBitmapInfo;
enum __attribute__((flag_enum)) : CGBitmapInfo {
    kCGBitmapByteOrder32Little = (2 << 12),
    kCGBitmapByteOrder32Big = (4 << 12),
};

// For the processor's byte order, which is the same on all processors that macOS runs on.
static const CGBitmapInfo kCGBitmapByteOrder32Host = kCGBitmapByteOrder32Little;

extern "C" {
extern const CFStringRef _Nonnull kCGColorSpaceSRGB;

CGColorSpaceRef _Nullable CGColorSpaceCreateWithName(CFStringRef _Nullable name);
void CGColorSpaceRelease(CGColorSpaceRef _Nullable space);
CGContextRef _Nullable CGBitmapContextCreate(void* _Nullable data, size_t width, size_t height,
                                             size_t bitsPerComponent, size_t bytesPerRow,
                                             CGColorSpaceRef _Nullable space, uint32_t bitmapInfo);
void CGContextRelease(CGContextRef _Nullable context);
void CGImageRelease(CGImageRef _Nullable image);
}
