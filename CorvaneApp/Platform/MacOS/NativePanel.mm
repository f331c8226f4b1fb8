#include "Platform/MacOS/NativePanel.h"

#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/Hover.h"
#include "Platform/MacOS/PathSegments.h"
#include "Platform/MacOS/Screens.h"

#include <QEvent>
#include <QGuiApplication>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#import <AppKit/AppKit.h>
#include <utility>
#include <vector>

@interface BannerPanel : NSPanel
- (instancetype)initWithContentSize:(NSSize)size;
- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)mask
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)flag NS_UNAVAILABLE;
@property(nonatomic, weak) NSView* hostedView;
@property(nonatomic, copy) void (^onKeyboardChange)(void);
@end

@implementation BannerPanel

- (instancetype)initWithContentSize:(NSSize)size {
    // The mask must be passed here: set later, it reads back the same, but clicks activate the application.
    self = [super initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                            styleMask:NSWindowStyleMaskNonactivatingPanel
                              backing:NSBackingStoreBuffered
                                defer:NO];
    if (self) {
        self.floatingPanel = YES;
        // After the line above, which sets a level of its own.
        self.level = NSStatusWindowLevel;
        self.collectionBehavior =
            NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
            NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenAuxiliary;
        self.backgroundColor = NSColor.clearColor;
        self.opaque = NO;
        self.hasShadow = YES;
        self.hidesOnDeactivate = NO;
        self.releasedWhenClosed = NO;
        [self setAccessibilityLabel:@"Corvane"];
    }
    return self;
}

// Declared unavailable; a caller that gets around that would get a panel without its settings.
- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)mask
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)flag {
    qFatal("BannerPanel: initWithContentRect:styleMask:backing:defer: is not implemented");
}

// By default a window without a title bar cannot get the keyboard focus, nor its buttons clicks.
- (BOOL)canBecomeKeyWindow {
    return YES;
}

- (void)becomeKeyWindow {
    [super becomeKeyWindow];
    // Qt notices the focus when its view becomes first responder, in older versions only then; the view may
    // be first responder already, hence the change to nil.
    [self makeFirstResponder:nil];
    [self makeFirstResponder:self.hostedView];
    if (self.onKeyboardChange) self.onKeyboardChange();
}

- (void)resignKeyWindow {
    [super resignKeyWindow];
    if (self.onKeyboardChange) self.onKeyboardChange();
}

@end

// Qt's view does not report mouse movements while the application is inactive, which it nearly always is; yet
// it synthesises one before a click, so that the clicked control would keep looking hovered.
@interface CorvaneHover : NSObject
- (instancetype)initWithPanel:(BannerPanel*)panel content:(QWidget*)content;
@end

@implementation CorvaneHover {
    __weak BannerPanel* _panel;
    QPointer<QWidget> _content;
    corvane::Hover _hover;
}

- (instancetype)initWithPanel:(BannerPanel*)panel content:(QWidget*)content {
    self = [super init];
    if (self) {
        _panel = panel;
        _content = content;
    }
    return self;
}

- (QWindow*)window {
    return _content.isNull() ? nullptr : _content->windowHandle();
}

- (void)mouseMoved:(NSEvent*)event {
    BannerPanel* const panel = _panel;
    NSView* const view = panel.hostedView;
    QWindow* const window = [self window];
    // While the application is active, Qt's view reports the mouse by itself.
    if (NSApp.active || !view || window == nullptr) return;
    // The view is flipped, like all of Qt's.
    const NSPoint local = [view convertPoint:event.locationInWindow fromView:nil];
    const NSPoint global = [panel convertPointToScreen:event.locationInWindow];
    _hover.move(*window, {local.x, local.y}, {global.x, corvane::desktopTop() - global.y});
}

- (void)mouseEntered:(NSEvent*)event {
    [self mouseMoved:event];
}

- (void)mouseExited:(NSEvent*)event {
    if (QWindow* const window = [self window]) _hover.leave(*window);
}

@end

namespace corvane {

namespace {

/// Null on a Qt platform that has no such views.
NSView* viewOf(QWidget& widget) {
    if (QGuiApplication::platformName() != QLatin1String("cocoa")) return nil;
    return (__bridge NSView*)reinterpret_cast<void*>(widget.winId());
}

NSImage* mask(QSize size, const QPainterPath& outline) {
    NSBezierPath* const shape = [NSBezierPath bezierPath];
    const auto point = [](QPointF p) { return NSMakePoint(p.x(), p.y()); };
    for (const PathSegment& segment : pathSegments(outline)) {
        switch (segment.kind) {
        case PathSegment::Kind::move:
            [shape moveToPoint:point(segment.end)];
            break;
        case PathSegment::Kind::line:
            [shape lineToPoint:point(segment.end)];
            break;
        case PathSegment::Kind::curve:
            [shape curveToPoint:point(segment.end)
                  controlPoint1:point(segment.control1)
                  controlPoint2:point(segment.control2)];
            break;
        }
    }
    // Only the coverage counts, not the colour. Flipped, since y grows downwards in outlines.
    return [NSImage imageWithSize:NSMakeSize(size.width(), size.height())
                          flipped:YES
                   drawingHandler:^BOOL(NSRect) {
                     [NSColor.blackColor set];
                     [shape fill];
                     return YES;
                   }];
}

/// Refreshes the shadow once the content is on the screen: the system computes it from what is drawn, and
/// does not update it by itself.
class FirstPaint : public QObject {
  public:
    void await(QWidget& content, BannerPanel* panel) {
        panel_ = panel;
        content.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // The event precedes the painting, which precedes its result on the screen.
            QTimer::singleShot(settling, this, [this] { [panel_ invalidateShadow]; });
        }
        return false;
    }

  private:
    static constexpr std::chrono::milliseconds settling{40};

    __weak BannerPanel* panel_ = nil;
};

} // namespace

struct NativePanel::Parts {
    BannerPanel* panel = nil;
    NSVisualEffectView* card = nil;
    CorvaneHover* hover = nil; // its tracking area does not retain it
    FirstPaint firstPaint;
};

NativePanel::NativePanel()
    : parts_(std::make_unique<Parts>()) {
    parts_->panel = [[BannerPanel alloc] initWithContentSize:NSMakeSize(1, 1)];
}

NativePanel::~NativePanel() {
    parts_->panel.onKeyboardChange = nil;
    [parts_->panel orderOut:nil];
}

void NativePanel::setContent(QWidget& content, QSize size, const QPainterPath& outline) {
    content.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    content.setAttribute(Qt::WA_TranslucentBackground);
    content.setAttribute(Qt::WA_ShowWithoutActivating);
    content.setAttribute(Qt::WA_QuitOnClose, false);

    NSVisualEffectView* const card =
        [[NSVisualEffectView alloc] initWithFrame:NSMakeRect(0, 0, size.width(), size.height())];
    card.material = NSVisualEffectMaterialPopover;
    card.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    // Otherwise the panel would look inactive, since the application is hardly ever active.
    card.state = NSVisualEffectStateActive;
    parts_->card = card;
    parts_->panel.hostedView = nil;
    parts_->panel.contentView = card;
    // Before the view is added, which would otherwise be resized several times.
    resize(size, outline);

    NSView* const view = viewOf(content);
    if (view) {
        // Detaches the view from Qt's own window, which is never shown. From then on Qt knows that the view
        // is embedded and leaves the window around it alone.
        view.window.contentView = nil;
        // It is resized together with the widget: with autoresizing, AppKit would apply each change twice.
        view.autoresizingMask = NSViewNotSizable;
        [card addSubview:view];
    }
    parts_->panel.hostedView = view;
    view.frame = card.bounds;
    parts_->hover = [[CorvaneHover alloc] initWithPanel:parts_->panel content:&content];
    [card addTrackingArea:[[NSTrackingArea alloc]
                              initWithRect:card.bounds
                                   options:NSTrackingActiveAlways | NSTrackingMouseMoved |
                                           NSTrackingMouseEnteredAndExited | NSTrackingInVisibleRect
                                     owner:parts_->hover
                                  userInfo:nil]];
    parts_->firstPaint.await(content, parts_->panel);
    // Only now: if it were shown earlier, Qt would turn the view into a window again.
    content.show();
    view.frame = card.bounds;
    if (hasKeyboard()) [parts_->panel makeFirstResponder:view];
}

void NativePanel::resize(QSize size, const QPainterPath& outline) {
    const NSRect frame = parts_->panel.frame;
    // In one step, keeping the upper left corner.
    [parts_->panel
        setFrame:NSMakeRect(frame.origin.x, NSMaxY(frame) - size.height(), size.width(), size.height())
         display:NO];
    parts_->card.maskImage = mask(size, outline);
    NSView* const view = parts_->panel.hostedView;
    if (!NSEqualRects(view.frame, parts_->card.bounds)) view.frame = parts_->card.bounds;
    [parts_->panel invalidateShadow];
}

void NativePanel::release(QWidget& content) {
    content.hide();
    if (content.testAttribute(Qt::WA_WState_Created)) [viewOf(content) removeFromSuperview];
}

void NativePanel::setOrigin(QPoint origin) {
    const NSSize size = parts_->panel.frame.size;
    const geometry::NativePoint corner =
        geometry::toNative(origin, QSize(qRound(size.width), qRound(size.height)), desktopTop());
    [parts_->panel setFrameOrigin:NSMakePoint(corner.x, corner.y)];
}

void NativePanel::setOpacity(double opacity) {
    parts_->panel.alphaValue = opacity;
}

void NativePanel::setIgnoresClicks(bool ignores) {
    parts_->panel.ignoresMouseEvents = ignores;
}

void NativePanel::animate(double opacity, std::optional<QPoint> origin, std::chrono::milliseconds duration) {
    BannerPanel* const panel = parts_->panel;
    NSRect frame = panel.frame;
    if (origin) {
        const QSize size(qRound(frame.size.width), qRound(frame.size.height));
        const geometry::NativePoint corner = geometry::toNative(*origin, size, desktopTop());
        frame.origin = NSMakePoint(corner.x, corner.y);
    }
    const double seconds = std::chrono::duration<double>(duration).count();
    const bool moves = origin.has_value();
    [NSAnimationContext runAnimationGroup:^(NSAnimationContext* context) {
      context.duration = seconds;
      panel.animator.alphaValue = opacity;
      // The whole frame, which is what windows are documented to animate, rather than its origin alone.
      if (moves) [panel.animator setFrame:frame display:YES];
    }];
}

void NativePanel::orderFront() {
    [parts_->panel orderFrontRegardless];
}

void NativePanel::orderFrontWithKeyboard() {
    [parts_->panel makeKeyAndOrderFront:nil];
}

void NativePanel::orderOut() {
    [parts_->panel orderOut:nil];
}

bool NativePanel::isVisible() const {
    return parts_->panel.visible;
}

bool NativePanel::hasKeyboard() const {
    return parts_->panel.keyWindow;
}

void NativePanel::setKeyboardHandler(std::function<void()> handler) {
    parts_->panel.onKeyboardChange = ^{
      handler();
    };
}

void* NativePanel::handle() const {
    return (__bridge void*)parts_->panel;
}

} // namespace corvane
