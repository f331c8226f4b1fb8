#pragma once

#include <QObject>

namespace corvane {

class StackingGuard;

/// Hands a press on a panel on to it that closes a menu of the application's own. On X11 an open menu gets
/// all presses, and one beside it only closes it, as is the custom; but a panel's buttons work at any time,
/// and are not to need a second press when a menu happens to be open. Main thread only.
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
