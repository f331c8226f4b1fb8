#pragma once

#include <QObject>

namespace corvane {

class StackingGuard;

/// If a press on a panel closes one of the application's menus, passes the press on to the panel. On X11 an
/// open menu grabs all presses, and a press outside it customarily only closes it; but a panel's buttons must
/// always work at the first press, even if a menu happens to be open. Main thread only.
class PopupPresses : public QObject {
    Q_OBJECT

  public:
    /// `guard` must outlive this object.
    explicit PopupPresses(const StackingGuard& guard);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    const StackingGuard& guard_;
};

} // namespace corvane
