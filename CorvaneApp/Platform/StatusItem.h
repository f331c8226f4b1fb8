#pragma once

#include <QObject>
#include <QRect>
#include <QString>

class QMenu;

namespace corvane {

/// The application's icon in the menu bar or system tray. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

  public:
    /// Shows the plain bell for zero waiting agents, else the bell with its badge, with the number from two
    /// on. `label` is what assistive technology says, `toolTip` what shows under the pointer.
    virtual void show(int waitingCount, const QString& label, const QString& toolTip) = 0;

    /// The menu for hosts that show menus only. Owned by the caller, which keeps its actions up to date.
    virtual void setMenu(QMenu* menu) = 0;

    /// Whether there is any place on this desktop where the icon is visible. May change while running.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// The icon's current place on the desktop, in device-independent pixels; empty if the host does not
    /// report it, or shows none.
    [[nodiscard]] virtual QRect place() const = 0;

  Q_SIGNALS:
    /// The user pressed the icon. `place` is where it is on the desktop, in device-independent pixels; empty
    /// if the host does not report it.
    void pressed(QRect place);

    void availabilityChanged();
};

} // namespace corvane
