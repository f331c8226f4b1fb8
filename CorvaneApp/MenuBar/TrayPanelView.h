#pragma once

#include <QWidget>

namespace corvane {

/// The base class of the tray panel's content. `sizeHint` is the size that the content currently needs.
class TrayPanelView : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;

    /// Called each time the panel is about to be shown.
    virtual void prepareToOpen() {}

  Q_SIGNALS:
    /// The height that the content needs has changed.
    void heightChanged();
    /// The user chose an action that leads away from the panel.
    void left();
};

} // namespace corvane
