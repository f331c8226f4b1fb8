#include "Platform/Linux/StackingGuard.h"

#include "Platform/Linux/X11.h"

#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace corvane {

namespace {

// The top bit tells events that another client sent.
constexpr std::uint8_t responseTypeMask = 0x7F;

} // namespace

StackingGuard::StackingGuard() {
    activeWindowAtom_ = x11::atom("_NET_ACTIVE_WINDOW");
    timer_.setInterval(std::chrono::seconds(1));
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (!x11::hasActiveWindowHint()) restore();
        Q_EMIT secondPassed();
    });
    QCoreApplication::instance()->installNativeEventFilter(this);
}

StackingGuard::~StackingGuard() = default;

void StackingGuard::raise(QWidget& window) {
    const bool isNew = std::erase(windows_, &window) == 0;
    windows_.push_back(&window);
    window.raise();
    x11::flush();
    if (!timer_.isActive()) timer_.start();
    if (isNew) Q_EMIT arrangementChanged();
}

void StackingGuard::release(QWidget& window) {
    if (std::erase(windows_, &window) == 0) return;
    if (windows_.empty()) timer_.stop();
    Q_EMIT arrangementChanged();
}

bool StackingGuard::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (windows_.empty() || eventType != "xcb_generic_event_t") return false;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & responseTypeMask) != XCB_PROPERTY_NOTIFY) return false;
    const auto* const change = static_cast<const xcb_property_notify_event_t*>(message);
    if (change->atom == activeWindowAtom_) restore();
    return false;
}

void StackingGuard::restore() {
    for (QWidget* const window : windows_)
        window->raise();
    x11::flush();
}

} // namespace corvane
