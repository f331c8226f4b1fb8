#pragma once

#include "Platform/Appearance.h"
#include "Platform/Linux/TrayBar.h"
#include "Platform/Linux/TrayHosts.h"
#include "Platform/StatusItem.h"

#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

namespace corvane {

/// A StatusNotifierItem on the session bus if there is a host for those, else a window embedded in the tray.
///
/// Qt chooses between the two once per process, when its first icon is created. So the icon is created only
/// when a host of either kind appears; until then nothing is shown.
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
    /// The appearance of the bar that the icon is on, as far as it is known.
    [[nodiscard]] ColorScheme barScheme();
    /// Asks the tray again to embed the icon, if it has not.
    void insist();

    Appearance& appearance_;
    std::unique_ptr<TrayHosts> hosts_;
    std::unique_ptr<TrayBar> bar_; // with an embedded icon
    std::unique_ptr<QSystemTrayIcon> icon_;
    QTimer insistence_;
    bool isNotifier_ = false; // the kind of icon; false: embedded
    QPointer<QMenu> menu_;
    int waitingCount_ = 0;
    QString label_;
    QString toolTip_;
};

} // namespace corvane
