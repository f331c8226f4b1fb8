#include "Controls/WindowCommands.h"

#include "Controls/ShowMainWindowButton.h"

#include <QAction>
#include <QWidget>

#include <utility>

namespace corvane {

namespace {

QAction* command(QWidget& window, const QString& text, QKeyCombination shortcut,
                 const std::function<void()>& handler) {
    auto* const action = new QAction(text, &window);
    if (shortcut.key() != Qt::Key_unknown) action->setShortcut(shortcut);
    // Some systems move actions to another menu, going by their text unless they are told.
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, &window, handler);
    window.addAction(action);
    return action;
}

} // namespace

WindowCommands::WindowCommands(QWidget& window, const CommandHandlers& handlers, MenuPlace menuPlace)
    : QObject(&window)
    , mainWindow_(new ShowMainWindowButton(handlers.openMainWindow, &window))
    , settings_(command(window, tr("Settings…"), Qt::CTRL | Qt::Key_Comma, handlers.openSettings))
    , close_(command(window, tr("Close"), Qt::CTRL | Qt::Key_W, [&window] { window.close(); }))
    , quit_(command(window, tr("Quit"), Qt::CTRL | Qt::Key_Q, handlers.quit))
    , panel_(command(
          window, tr("Sessions"), QKeyCombination(Qt::Key_unknown),
          [open = handlers.openPanel, place = std::move(menuPlace)] { open(place ? place() : QRect()); })) {
    window.addAction(mainWindow_);
    settings_->setMenuRole(QAction::PreferencesRole);
    quit_->setMenuRole(QAction::QuitRole);
}

} // namespace corvane
