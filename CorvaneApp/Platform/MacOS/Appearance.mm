#include "Platform/MacOS/Appearance.h"

#include <QMetaObject>

#import <AppKit/AppKit.h>

@interface CorvaneAppearanceObserver : NSObject
@property(nonatomic, copy) void (^onChange)(void);
@end

@implementation CorvaneAppearanceObserver

- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    if (self.onChange) self.onChange();
}

@end

namespace corvane {

namespace {

NSString* const appearancePath = @"effectiveAppearance";

} // namespace

struct MacAppearance::Parts {
    CorvaneAppearanceObserver* observer = nil;
    NSApplication* application = nil;
};

MacAppearance::MacAppearance()
    : parts_(std::make_unique<Parts>())
    , displayOptionsChange_(
          NotificationCenter::workspace,
          QString::fromNSString(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification),
          [this] { Q_EMIT changed(); }) {
    parts_->observer = [CorvaneAppearanceObserver new];
    // Deferred until Qt, which observes the same property, has updated its colours.
    parts_->observer.onChange = ^{
      QMetaObject::invokeMethod(this, &Appearance::changed, Qt::QueuedConnection);
    };
    parts_->application = NSApp;
    [parts_->application addObserver:parts_->observer forKeyPath:appearancePath options:0 context:nullptr];
}

MacAppearance::~MacAppearance() {
    [parts_->application removeObserver:parts_->observer forKeyPath:appearancePath];
}

ColorScheme MacAppearance::colorScheme() const {
    NSAppearanceName const match = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return [match isEqualToString:NSAppearanceNameDarkAqua] ? ColorScheme::dark : ColorScheme::light;
}

bool MacAppearance::reduceMotion() const {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

Contrast MacAppearance::contrast() const {
    const bool isHigh = NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
    return isHigh ? Contrast::high : Contrast::normal;
}

} // namespace corvane
