#pragma once

#include <QWidget>

namespace corvane {

/// What the tray panel can show. `sizeHint` is the size that the content needs at present.
class TrayPanelView : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;

    /// Called each time the panel is about to be shown.
    virtual void prepareToOpen() {}

  Q_SIGNALS:
    /// The content needs another height.
    void heightChanged();
    /// An action was chosen that leads away from the panel.
    void left();
};

} // namespace corvane
