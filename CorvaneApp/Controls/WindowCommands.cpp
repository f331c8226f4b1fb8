#include "Controls/WindowCommands.h"

#include "Controls/ShowMainWindowButton.h"

#include <QAction>
#include <QWidget>

#include <utility>

namespace corvane {

namespace {

QAction* command(QObject& parent, const QString& text, QKeyCombination shortcut,
                 const std::function<void()>& handler) {
    auto* const action = new QAction(text, &parent);
    if (shortcut.key() != Qt::Key_unknown) action->setShortcut(shortcut);
    // macOS moves actions to the application menu by their text unless they have a role.
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, &parent, handler);
    return action;
}

} // namespace

WindowCommands::WindowCommands(QWidget& window, const CommandHandlers& handlers, MenuPlace menuPlace)
    : WindowCommands(
          static_cast<QObject&>(window), handlers, [&window] { window.close(); }, std::move(menuPlace)) {
    window.addActions({mainWindow_, settings_, close_, quit_, panel_});
}

WindowCommands::WindowCommands(QObject& menus, const CommandHandlers& handlers,
                               const std::function<void()>& close, MenuPlace menuPlace)
    : QObject(&menus)
    , mainWindow_(new ShowMainWindowButton(handlers.openMainWindow, &menus))
    , settings_(command(menus, tr("Settings…"), Qt::CTRL | Qt::Key_Comma, handlers.openSettings))
    , close_(command(menus, tr("Close"), Qt::CTRL | Qt::Key_W, close))
    , quit_(command(menus, tr("Quit"), Qt::CTRL | Qt::Key_Q, handlers.quit))
    , panel_(command(
          menus, tr("Sessions"), QKeyCombination(Qt::Key_unknown),
          [open = handlers.openPanel, place = std::move(menuPlace)] { open(place ? place() : QRect()); })) {
    settings_->setMenuRole(QAction::PreferencesRole);
    quit_->setMenuRole(QAction::QuitRole);
}

WindowCommands* WindowCommands::of(const QWidget& window) {
    return window.findChild<WindowCommands*>({}, Qt::FindDirectChildrenOnly);
}

} // namespace corvane
