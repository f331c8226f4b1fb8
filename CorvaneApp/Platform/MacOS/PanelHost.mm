#include "Platform/MacOS/PanelHost.h"

#include "Platform/Shared/PlainPanelHost.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>

#import <AppKit/AppKit.h>
#include <functional>

namespace corvane {

struct MacPanelHost::Monitor {
    /// By value: a block that captures a reference copies only its address.
    explicit Monitor(std::function<void()> onPress)
        : token([NSEvent addGlobalMonitorForEventsMatchingMask:
                             NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown
                                                       handler:^(NSEvent*) {
                                                         onPress();
                                                       }]) {}
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    ~Monitor() {
        if (token) [NSEvent removeMonitor:token];
    }

    id token;
};

std::unique_ptr<PanelHost> MacPanelHosts::make(QWidget& window) {
    if (QGuiApplication::platformName() != QLatin1String("cocoa"))
        return std::make_unique<PlainPanelHost>(window, activation_);
    return std::make_unique<MacPanelHost>(window);
}

MacPanelHost::MacPanelHost(QWidget& window)
    : window_(window) {
    window_.installEventFilter(this);
    panel_.setKeyboardHandler([this] { Q_EMIT keyboardChanged(); });
}

MacPanelHost::~MacPanelHost() {
    panel_.setKeyboardHandler([] {});
    if (isHosted_) NativePanel::release(window_);
}

void MacPanelHost::setGeometry(const QRect& geometry, const QPainterPath& outline) {
    geometry_ = geometry;
    outline_ = outline;
    if (!isHosted_) return;
    panel_.resize(geometry.size(), outline);
    panel_.setOrigin(geometry.topLeft());
}

void MacPanelHost::present() {
    if (isHosted_) {
        window_.show();
    } else {
        isHosted_ = true;
        panel_.setContent(window_, geometry_.size(), outline_);
    }
    panel_.setOrigin(geometry_.topLeft());
    panel_.orderFrontWithKeyboard();
    // Again, now that it is on a screen: macOS 26 misplaces panels under the menu bar when they are first
    // shown.
    panel_.setOrigin(geometry_.topLeft());
    if (monitor_) return;
    // Deferred, since closing the panel destroys the monitor, which may be in the middle of a call.
    const QPointer<MacPanelHost> self(this);
    monitor_ = std::make_unique<Monitor>([self] {
        if (self) QMetaObject::invokeMethod(self.data(), &PanelHost::pressedElsewhere, Qt::QueuedConnection);
    });
}

bool MacPanelHost::hasKeyboard() const {
    return panel_.hasKeyboard();
}

bool MacPanelHost::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide) {
        monitor_.reset();
        panel_.orderOut();
    }
    return PanelHost::eventFilter(watched, event);
}

} // namespace corvane
