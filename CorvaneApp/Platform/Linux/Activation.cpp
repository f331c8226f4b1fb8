#include "Platform/Activation.h"

#include "Platform/Linux/X11.h"

#include <QWidget>

namespace corvane {

void bringToUsersWorkspace(const QWidget& window) {
    const WId id = window.internalWinId();
    if (id != 0) x11::moveToCurrentWorkspace(static_cast<xcb_window_t>(id));
}

// Here windows are active, each for itself.
void activateApplication() {}

} // namespace corvane
