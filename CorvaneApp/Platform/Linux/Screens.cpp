#include "Platform/Linux/Screens.h"

#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <cstdint>

namespace corvane {

namespace {

// Qt leaves a screen's origin in device pixels and scales only its size.
QRect devicePixels(const QScreen& screen) {
    const QRect geometry = screen.geometry();
    return {geometry.topLeft(), (QSizeF(geometry.size()) * screen.devicePixelRatio()).toSize()};
}

// Qt knows the work area only if there is a single screen, and permanently misses a change that happens while
// Qt starts, such as at login.
QRect availableToX(const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const QRect whole = devicePixels(screen);
    std::optional<QRect> free;
    if (QGuiApplication::screens().size() > 1)
        free = x11::freeArea(whole);
    else if (const std::optional<QRect> area = x11::workArea())
        free = area->intersected(whole);
    if (!free || free->isEmpty()) return screen.geometry();
    const qreal ratio = screen.devicePixelRatio();
    return {origin + ((free->topLeft() - origin) / ratio), (QSizeF(free->size()) / ratio).toSize()};
}

QScreen* screenWithFocus() {
    const std::optional<xcb_window_t> window = x11::activeWindow();
    if (!window) return nullptr;
    const std::optional<QRect> geometry = x11::rootGeometry(*window);
    if (!geometry) return nullptr;

    QScreen* best = nullptr;
    std::int64_t largest = 0;
    for (QScreen* const screen : QGuiApplication::screens()) {
        const QRect common = devicePixels(*screen).intersected(*geometry);
        const std::int64_t area = std::int64_t{common.width()} * common.height();
        if (!common.isEmpty() && area > largest) {
            largest = area;
            best = screen;
        }
    }
    return best;
}

} // namespace

LinuxScreens::LinuxScreens()
    : sway_(std::make_unique<SwayOutputs>(sway::socket())) {
    connect(sway_.get(), &SwayOutputs::changed, this, &Screens::changed);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        Q_EMIT changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &Screens::changed);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &Screens::changed);
    for (QScreen* const screen : QGuiApplication::screens())
        watch(screen);
    connect(&XEvents::instance(), &XEvents::propertyChanged, this,
            [this, workArea = x11::atom("_NET_WORKAREA")](xcb_atom_t name) {
                // Deferred until the window manager has updated its other properties.
                if (name == workArea) QTimer::singleShot(0, this, &Screens::changed);
            });
}

void LinuxScreens::watch(QScreen* screen) {
    connect(screen, &QScreen::availableGeometryChanged, this, &Screens::changed);
    connect(screen, &QScreen::geometryChanged, this, &Screens::changed);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &Screens::changed);
}

std::optional<QRect> LinuxScreens::mainVisibleFrame() const {
    return visibleFrame(mainScreen());
}

std::optional<QRect> LinuxScreens::visibleFrameAt(QPoint place) const {
    const QScreen* const screen = QGuiApplication::screenAt(place);
    return visibleFrame(screen != nullptr ? screen : QGuiApplication::primaryScreen());
}

QScreen* LinuxScreens::mainScreen() const {
    if (const SwayOutput* const output = sway_->focused()) {
        for (QScreen* const screen : QGuiApplication::screens()) {
            if (sway_->at(devicePixels(*screen)) == output) return screen;
        }
    }
    if (QScreen* const focused = screenWithFocus()) return focused;
    if (QScreen* const pointed = QGuiApplication::screenAt(QCursor::pos())) return pointed;
    return QGuiApplication::primaryScreen();
}

std::optional<QRect> LinuxScreens::visibleFrame(const QScreen* screen) const {
    // For the next call; if anything has changed, `changed` is emitted and the banners are repositioned.
    sway_->refresh();
    if (screen == nullptr) return std::nullopt;
    const SwayOutput* const output = sway_->at(devicePixels(*screen));
    if (output == nullptr) return availableToX(*screen);
    // Not the output's own area: XWayland rounds a scaled screen's size down.
    const qreal ratio = screen->devicePixelRatio();
    return screen->geometry().marginsRemoved((QMarginsF(output->reserved) / ratio).toMargins());
}

} // namespace corvane
