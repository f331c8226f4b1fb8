#pragma once

#include "Controls/WindowCommands.h"

#include <QWidget>

#include <functional>

namespace corvane {

class Activation;
class AppModel;
class SettingsPages;

/// The settings window, fixed to its content. Refreshes the agents' connection state whenever it is shown or
/// activated. Main thread only.
class SettingsWindow : public QWidget {
    Q_OBJECT

  public:
    /// Creates the content, as a child of the window, at the current text size.
    using MakePages = std::function<SettingsPages*(QWidget* parent)>;

    /// `model` and `activation` must outlive the window.
    SettingsWindow(AppModel& model, Activation& activation, MakePages makePages,
                   const CommandHandlers& handlers);

    [[nodiscard]] SettingsPages& view() const { return *view_; }

    /// Rebuilds the content at the current text size; the selected tab stays.
    void rebuild();

    /// Shows the window, restored if minimised, and asks the window manager to bring it to the front.
    void present();

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    AppModel& model_;
    Activation& activation_;
    MakePages makePages_;
    SettingsPages* view_ = nullptr;
};

} // namespace corvane
