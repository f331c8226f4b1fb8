#pragma once

#include "Controls/Controls.h"

#include <QWidget>

namespace corvane {

class AppModel;
class ErrorText;

/// When to alert, and with which sounds. Shows the stored preferences; only the user's input changes them.
class AlertsTab : public QWidget {
    Q_OBJECT

  public:
    AlertsTab(AppModel& model, const ReduceMotion& reduceMotion, QWidget* parent);

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    /// Sets the login item's switch to the system's actual state.
    void refreshLoginItem();
    void layOut();

    AppModel& model_;
    /// True while the controls are set from the model: their changes are then not the user's.
    bool isRefreshing_ = false;
    FormGroup* toggles_;
    FormGroup* pickers_;
    Switch* alertWhenDone_;
    Switch* opensAtLogin_;
    Switch* soundsOn_;
    Picker* waitingSound_;
    Picker* doneSound_;
    Picker* reminder_;
    BorderedButton* start_;
    ErrorText* error_;
};

} // namespace corvane
