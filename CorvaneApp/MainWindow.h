#pragma once

#include "Controls/Links.h"
#include "Controls/WindowCommands.h"
#include "Platform/Platform.h"

#include <QMainWindow>
#include <QRect>

class QMenu;

class QMenuBar;

namespace corvane {

class Activation;
class AppModel;
class OnboardingView;

/// The window "main", fixed to its content, with the application's menus where windows have menu bars.
/// Closing it never quits. Refreshes the agents' connection state whenever it is shown or activated. Main
/// thread only.
///
/// Whether it opens at launch is the application's decision; `present` opens it whenever it is called.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// `model` and `activation` must outlive the window.
    MainWindow(AppModel& model, Activation& activation, links::Opener openLink,
               const CommandHandlers& handlers, MenuBars menuBars = MenuBars::ofWindows);

    /// Adds the menus with `commands` to `bar`; returns the first of them.
    static QMenu* addMenus(QMenuBar& bar, const WindowCommands& commands);

    [[nodiscard]] OnboardingView& view() const { return *view_; }

    /// Rebuilds the content at the current text size.
    void rebuild();

    /// Sets whether the desktop shows the application's icon.
    void setTray(bool isThere);

    /// Shows the window, restored if minimised, and asks the window manager to bring it to the front.
    void present();

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// The rectangle of the File menu's title on the desktop; the window's upper edge if the menu bar is
    /// outside of the window.
    [[nodiscard]] QRect menuPlace() const;

    AppModel& model_;
    Activation& activation_;
    links::Opener openLink_;
    OnboardingView* view_ = nullptr;
    WindowCommands* commands_;
    QMenu* file_ = nullptr;
    bool hasTray_ = true;
};

} // namespace corvane
