#include "Platform/Linux/StackingGuard.h"

#include "Platform/Linux/X11.h"

#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <ranges>
#include <utility>

namespace corvane {

namespace {

// The top bit tells events that another client sent.
constexpr std::uint8_t responseTypeMask = 0x7F;

xcb_window_t native(const QWidget& window) {
    return static_cast<xcb_window_t>(window.internalWinId());
}

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
    // Whenever one is shown, all are raised one after the other: only the order at the end counts.
    if (!std::exchange(isRestoring_, true))
        QMetaObject::invokeMethod(this, &StackingGuard::restore, Qt::QueuedConnection);
    if (!timer_.isActive()) timer_.start();
    if (isNew) Q_EMIT arrangementChanged();
}

void StackingGuard::release(QWidget& window) {
    if (std::erase(windows_, &window) == 0) return;
    if (windows_.empty()) {
        timer_.stop();
    } else if (window.isVisible()) {
        // The others may take its place while it fades out, and are not to be seen through it.
        x11::placeBelow(native(window), native(*windows_.front()));
    }
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
    isRestoring_ = false;
    if (x11::connection() == nullptr) {
        for (QWidget* const window : windows_)
            window->raise();
        return;
    }
    // From the front on, each directly below the one before: the server leaves a window alone that is there
    // already. Raised one after the other, each of them would be in front for a moment.
    const QWidget* above = nullptr;
    for (QWidget* const window : std::ranges::reverse_view(windows_)) {
        if (above == nullptr) {
            window->raise();
        } else {
            x11::placeBelow(native(*window), native(*above));
        }
        above = window;
    }
    x11::flush();
}

} // namespace corvane
