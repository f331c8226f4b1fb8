#include "ApplicationMenuBar.h"

#include "MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace corvane {

namespace {

/// Closes the active window by its own Close command; windows without commands, such as banners, stay open.
void closeActiveWindow() {
    const QWidget* const active = QApplication::activeWindow();
    if (active == nullptr) return;
    if (const WindowCommands* const commands = WindowCommands::of(*active)) commands->close()->trigger();
}

} // namespace

ApplicationMenuBar::ApplicationMenuBar(const CommandHandlers& handlers) {
    QMenu* const file = MainWindow::addMenus(bar_, *new WindowCommands(bar_, handlers, &closeActiveWindow));
    // By their roles, Qt moves About, Settings and Quit to the application menu, which already has Services
    // and Hide.
    QAction* const about =
        file->addAction(QCoreApplication::translate("corvane::ApplicationMenuBar", "About Corvane"));
    about->setMenuRole(QAction::AboutRole);
    QObject::connect(about, &QAction::triggered, &bar_, handlers.openAbout);
}

} // namespace corvane
