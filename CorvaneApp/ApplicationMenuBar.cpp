#include "ApplicationMenuBar.h"

#include "MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace corvane {

namespace {

/// Closes as the active window's own command does; windows without commands, such as banners, stay.
void closeActiveWindow() {
    const QWidget* const active = QApplication::activeWindow();
    if (active == nullptr) return;
    if (const WindowCommands* const commands = WindowCommands::of(*active)) commands->close()->trigger();
}

} // namespace

ApplicationMenuBar::ApplicationMenuBar(const CommandHandlers& handlers) {
    QMenu* const file = MainWindow::addMenus(bar_, *new WindowCommands(bar_, handlers, &closeActiveWindow));
    // Qt moves this one, the settings and quitting, by their roles, to the application's menu, which has the
    // services and hiding already.
    QAction* const about =
        file->addAction(QCoreApplication::translate("corvane::ApplicationMenuBar", "About Corvane"));
    about->setMenuRole(QAction::AboutRole);
    QObject::connect(about, &QAction::triggered, &bar_, handlers.openAbout);
}

} // namespace corvane
