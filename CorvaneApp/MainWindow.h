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

/// The window "main", fixed to its content, with the application's menus where windows have any. Closing it
/// never quits. Asks the agents' connection state anew whenever it comes to the user's sight. Main thread
/// only.
///
/// Whether it opens at launch is for the entry to decide; `present` opens it whenever it is called.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// `model` and `activation` must outlive the window.
    MainWindow(AppModel& model, Activation& activation, links::Opener openLink,
               const CommandHandlers& handlers, MenuBars menuBars = MenuBars::ofWindows);

    /// Puts the menus with `commands` into `bar`; the first of them.
    static QMenu* addMenus(QMenuBar& bar, const WindowCommands& commands);

    [[nodiscard]] OnboardingView& view() const { return *view_; }

    /// Makes the content anew, at the present text size.
    void rebuild();

    /// Shows the window, out of the task bar too, and asks the window manager to bring it to the front.
    void present();

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// Where the File menu's title is on the desktop; the window's upper edge where a menu bar outside of the
    /// window has it.
    [[nodiscard]] QRect menuPlace() const;

    AppModel& model_;
    Activation& activation_;
    links::Opener openLink_;
    OnboardingView* view_ = nullptr;
    WindowCommands* commands_;
    QMenu* file_ = nullptr;
};

} // namespace corvane
