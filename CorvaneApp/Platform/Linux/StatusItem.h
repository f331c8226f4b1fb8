#pragma once

#include "Platform/Appearance.h"
#include "Platform/Linux/TrayHosts.h"
#include "Platform/StatusItem.h"

#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

namespace corvane {

/// A StatusNotifierItem on the session bus where something shows those, else a window embedded in the tray.
///
/// Qt chooses between the two once in a process, when its first icon is made, and keeps to it. So the icon is
/// made only when there is a place for it, whichever comes first; until then nothing is shown.
class LinuxStatusItem : public StatusItem {
    Q_OBJECT

  public:
    explicit LinuxStatusItem(Appearance& appearance);
    ~LinuxStatusItem() override;

    void show(int waitingCount, const QString& label, const QString& toolTip) override;
    void setMenu(QMenu* menu) override;
    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] QRect place() const override;

  private:
    void settle();
    void makeIcon();
    void update();
    /// Asks the tray once more to embed the icon, if it did not.
    void insist();

    Appearance& appearance_;
    std::unique_ptr<TrayHosts> hosts_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QTimer insistence_;
    bool isNotifier_ = false; // of the icon; false: embedded
    QPointer<QMenu> menu_;
    int waitingCount_ = 0;
    QString label_;
    QString toolTip_;
};

} // namespace corvane
