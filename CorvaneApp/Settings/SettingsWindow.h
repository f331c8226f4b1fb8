#pragma once

#include "Controls/Links.h"
#include "Controls/WindowCommands.h"

#include <QWidget>

namespace corvane {

class AppModel;
class SettingsView;
struct Services;

/// The settings window, fixed to its content. Asks the agents' connection state anew whenever it comes to the
/// user's sight. Main thread only.
class SettingsWindow : public QWidget {
    Q_OBJECT

  public:
    /// `model` and `services`, and what that refers to, must outlive the window.
    SettingsWindow(AppModel& model, const Services& services, links::Opener openLink,
                   const CommandHandlers& handlers);

    [[nodiscard]] SettingsView& view() const { return *view_; }

    /// Makes the content anew, at the present text size; the chosen tab stays.
    void rebuild();

    /// Shows the window, also from minimised, and asks the window manager to bring it to the front.
    void present();

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    AppModel& model_;
    const Services& services_;
    links::Opener openLink_;
    SettingsView* view_ = nullptr;
};

} // namespace corvane
