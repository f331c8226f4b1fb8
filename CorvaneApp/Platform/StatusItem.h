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
    /// on. Assistive technology speaks `label`; hovering shows `toolTip`.
    virtual void show(int waitingCount, const QString& label, const QString& toolTip) = 0;

    /// Sets the menu for hosts that only show menus. The caller owns it and keeps its actions up to date.
    virtual void setMenu(QMenu* menu) = 0;

    /// Whether the desktop shows the icon anywhere. May change while running.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// The icon's current place on the desktop, in device-independent pixels; empty if the host does not
    /// report it, or if the icon is not shown.
    [[nodiscard]] virtual QRect place() const = 0;

  Q_SIGNALS:
    /// The user pressed the icon. `place` is the icon's place on the desktop, in device-independent pixels;
    /// empty if the host does not report it.
    void pressed(QRect place);

    void availabilityChanged();
};

} // namespace corvane
