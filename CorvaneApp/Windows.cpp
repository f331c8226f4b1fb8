#include "Windows.h"

#include <QWidget>

namespace corvane::windows {

void present(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace corvane::windows
