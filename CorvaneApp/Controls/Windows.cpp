#include "Controls/Windows.h"

#include "Platform/Activation.h"

#include <QWidget>

namespace corvane::windows {

void present(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    bringToUsersWorkspace(window);
    window.show();
    activateApplication();
    window.raise();
    window.activateWindow();
}

} // namespace corvane::windows
