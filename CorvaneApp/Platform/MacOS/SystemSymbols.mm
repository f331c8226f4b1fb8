#include "Platform/MacOS/SystemSymbols.h"

#import <AppKit/AppKit.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace corvane {

namespace {

// As a share of the box's side: at this font size the symbols are about as large as our own.
constexpr double fontShare = 0.75;

NSImage* symbol(const QString& name, double pointSize) {
    NSImage* const plain = [NSImage imageWithSystemSymbolName:name.toNSString() accessibilityDescription:nil];
    return [plain imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                                   configurationWithPointSize:pointSize
                                                                       weight:NSFontWeightRegular
                                                                        scale:NSImageSymbolScaleMedium]];
}

} // namespace

bool MacSystemSymbols::draw(QImage& image, const QString& name, const QRectF& box) {
    NSImage* const picture = symbol(name, fontShare * std::min(box.width(), box.height()));
    if (!picture || picture.size.width <= 0 || picture.size.height <= 0) return false;

    CGColorSpaceRef const space = CGColorSpaceCreateWithName(kCGColorSpaceSRGB);
    CGContextRef const context = CGBitmapContextCreate(
        image.bits(), static_cast<std::size_t>(image.width()), static_cast<std::size_t>(image.height()), 8,
        static_cast<std::size_t>(image.bytesPerLine()), space,
        static_cast<CGBitmapInfo>(static_cast<std::uint32_t>(kCGImageAlphaPremultipliedFirst) |
                                  static_cast<std::uint32_t>(kCGBitmapByteOrder32Host)));
    CGColorSpaceRelease(space);
    if (!context) return false;

    const double scale =
        std::min({1.0, box.width() / picture.size.width, box.height() / picture.size.height});
    const double width = picture.size.width * scale;
    const double height = picture.size.height * scale;
    // In the bitmap's context, y grows upwards.
    const NSRect place = NSMakeRect(box.center().x() - width / 2,
                                    image.height() - box.center().y() - height / 2, width, height);
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context flipped:NO];
    [picture drawInRect:place];
    [NSGraphicsContext restoreGraphicsState];
    CGContextRelease(context);
    return true;
}

} // namespace corvane
