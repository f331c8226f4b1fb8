#include "Platform/Linux/Activation.h"

#include "Platform/Linux/X11.h"

#include <QWidget>

namespace corvane {

void LinuxActivation::present(QWidget& window) {
    const StartupToken startup = std::exchange(startup_, {});
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    const WId id = window.internalWinId();
    if (id != 0) x11::moveToCurrentWorkspace(static_cast<xcb_window_t>(id));
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
