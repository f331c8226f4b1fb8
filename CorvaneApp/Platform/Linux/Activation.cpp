#include "Platform/Linux/Activation.h"

#include "Platform/Linux/X11.h"

#include <QWidget>

namespace corvane {

void LinuxActivation::present(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    const WId id = window.internalWinId();
    if (id != 0) x11::moveToCurrentWorkspace(static_cast<xcb_window_t>(id));
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace corvane
