#include "Platform/Linux/Activation.h"

#include "Platform/Linux/X11.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace corvane {

namespace {

/// Moves a window that was never shown to the middle of the user's screen. Left to themselves, some window
/// managers open it in a corner, and others partly below the screen.
void centre(QWidget& window) {
    const QScreen* const pointed = QGuiApplication::screenAt(QCursor::pos());
    const QScreen& screen = pointed != nullptr ? *pointed : *window.screen();
    window.ensurePolished();
    window.adjustSize();
    QRect place = QStyle::alignedRect(window.layoutDirection(), Qt::AlignCenter, window.size(),
                                      screen.availableGeometry());
    place.moveTop(std::max(place.top(), screen.availableGeometry().top()));
    // Without its frame, whose size is known only afterwards.
    window.setGeometry(place);
}

} // namespace

void LinuxActivation::present(QWidget& window) {
    const StartupToken startup = std::exchange(startup_, {});
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    const WId id = window.internalWinId();
    if (id != 0)
        x11::moveToCurrentWorkspace(static_cast<xcb_window_t>(id));
    else
        centre(window);
    window.show();
    if (x11::hasActiveWindowHint()) {
        const auto native = static_cast<xcb_window_t>(window.internalWinId());
        if (!startup.startupId.empty()) x11::finishStartup(native, startup.startupId);
        x11::requestActivation(native);
        x11::flush();
        return;
    }
    // Qt's Wayland client reads and removes the token there when it requests activation.
    if (!startup.activationToken.empty())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(startup.activationToken));
    window.raise();
    window.activateWindow();
}

} // namespace corvane
