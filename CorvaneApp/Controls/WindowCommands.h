#pragma once

#include <QObject>
#include <QRect>

#include <functional>

class QAction;
class QWidget;

namespace corvane {

/// What the application's commands do.
struct CommandHandlers {
    std::function<void()> openMainWindow;
    std::function<void()> openSettings;
    /// `menu` is the rectangle on the desktop of the title of the menu that the command came from; empty if
    /// it came from none.
    std::function<void(QRect menu)> openPanel;
    std::function<void()> quit;
    std::function<void()> openAbout = {}; // used only by the application's own menus
};

/// The commands of one window or of the application's menus, with their shortcuts: Ctrl+0 opens the main
/// window, Ctrl+comma the settings, Ctrl+W closes the window and Ctrl+Q quits (Command in place of Ctrl on
/// macOS). Main thread only; belongs to the window or the menus.
class WindowCommands : public QObject {
    Q_OBJECT

  public:
    /// The rectangle on the desktop of the title of the menu with the commands.
    using MenuPlace = std::function<QRect()>;

    /// The shortcuts work whether the actions are in a menu or not.
    WindowCommands(QWidget& window, const CommandHandlers& handlers, MenuPlace menuPlace = {});

    /// For menus, which belong to no window: "Close" calls `close`.
    WindowCommands(QObject& menus, const CommandHandlers& handlers, const std::function<void()>& close,
                   MenuPlace menuPlace = {});

    /// The commands of `window`; null if it has none.
    [[nodiscard]] static WindowCommands* of(const QWidget& window);

    [[nodiscard]] QAction* mainWindow() const { return mainWindow_; }
    [[nodiscard]] QAction* settings() const { return settings_; }
    [[nodiscard]] QAction* panel() const { return panel_; }
    [[nodiscard]] QAction* close() const { return close_; }
    [[nodiscard]] QAction* quit() const { return quit_; }

  private:
    QAction* mainWindow_;
    QAction* settings_;
    QAction* close_;
    QAction* quit_;
    QAction* panel_;
};

} // namespace corvane
