#include "Platform/Linux/StackingGuard.h"

#include "Platform/Linux/ScreenLockers.h"
#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <QWidget>

#include <algorithm>
#include <chrono>
#include <ranges>
#include <utility>

namespace corvane {

namespace {

xcb_window_t native(const QWidget& window) {
    return static_cast<xcb_window_t>(window.internalWinId());
}

} // namespace

StackingGuard::StackingGuard() {
    timer_.setInterval(std::chrono::seconds(1));
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (!isActiveKnown_) restore();
        Q_EMIT secondPassed();
    });
    connect(&XEvents::instance(), &XEvents::propertyChanged, this,
            [this, activeWindow = x11::atom("_NET_ACTIVE_WINDOW"),
             manager = x11::atom("_NET_SUPPORTING_WM_CHECK")](xcb_atom_t name) {
                if (windows_.empty()) return;
                if (name == activeWindow) restore();
                if (name == activeWindow || name == manager) followWindowManager();
            });
}

void StackingGuard::prepare(const QWidget& window) {
    const std::vector<xcb_window_t> lockers = x11::screenLockers();
    if (!lockers.empty()) x11::placeBelowAll(native(window), lockers);
}

void StackingGuard::raise(QWidget& window) {
    const bool isNew = std::erase(windows_, &window) == 0;
    windows_.push_back(&window);
    // Whenever one is shown, all are raised one after the other: only the final order counts.
    restoreSoon();
    if (windows_.size() == 1) followWindowManager();
    if (isNew) Q_EMIT arrangementChanged();
}

void StackingGuard::setBeat(Beat beat) {
    beat_ = beat;
    followWindowManager();
}

void StackingGuard::followWindowManager() {
    isActiveKnown_ = x11::hasActiveWindowHint();
    const bool isNeeded = !windows_.empty() && (!isActiveKnown_ || beat_ == Beat::always);
    if (!isNeeded) {
        timer_.stop();
    } else if (!timer_.isActive()) {
        timer_.start();
    }
}

void StackingGuard::keepBelow(const std::vector<QWidget*>& others) {
    above_.assign(others.begin(), others.end());
    // A window that is about to open is not in the stacking order yet.
    if (!windows_.empty()) restoreSoon();
}

void StackingGuard::restoreSoon() {
    if (!std::exchange(isRestoring_, true))
        QMetaObject::invokeMethod(this, &StackingGuard::restore, Qt::QueuedConnection);
}

void StackingGuard::release(QWidget& window) {
    if (std::erase(windows_, &window) == 0) return;
    if (windows_.empty()) {
        timer_.stop();
    } else if (window.isVisible()) {
        // The others may take its place while it fades out, and must not be visible through it.
        x11::placeBelow(native(window), native(*windows_.front()));
    }
    Q_EMIT arrangementChanged();
}

void StackingGuard::restore() {
    isRestoring_ = false;
    if (x11::connection() == nullptr) {
        for (QWidget* const window : windows_)
            window->raise();
        return;
    }
    std::vector<xcb_window_t> above = x11::screenLockers();
    for (const QPointer<QWidget>& window : above_) {
        if (window && window->isVisible()) above.push_back(native(*window));
    }
    // From the front to the back, each directly below the previous one: the server does nothing for a window
    // that is already there. If they were raised one after the other, each would be in front for a moment.
    const QWidget* next = nullptr;
    for (QWidget* const window : std::ranges::reverse_view(windows_)) {
        if (next != nullptr) {
            x11::placeBelow(native(*window), native(*next));
        } else if (above.empty()) {
            window->raise();
        } else {
            x11::placeBelowAll(native(*window), above);
        }
        next = window;
    }
    x11::flush();
}

} // namespace corvane
