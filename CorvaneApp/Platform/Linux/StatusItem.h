#pragma once

#include "Platform/Appearance.h"
#include "Platform/Linux/EmbeddedIcon.h"
#include "Platform/Linux/NotifierItem.h"
#include "Platform/Linux/TrayHosts.h"
#include "Platform/StatusItem.h"

#include <QPointer>
#include <QTimer>

#include <filesystem>
#include <memory>
#include <optional>

namespace corvane {

/// A StatusNotifierItem on the session bus while there is a host for it, else a window embedded in the tray.
/// Nothing is shown before a host of either kind appears.
class LinuxStatusItem : public StatusItem {
    Q_OBJECT

  public:
    explicit LinuxStatusItem(Appearance& appearance);
    ~LinuxStatusItem() override;

    /// The folder of the icon themes with the bell's drawings, next to the running program; empty if desktops
    /// search that folder anyway.
    [[nodiscard]] static std::filesystem::path iconFolder();

    void show(int waitingCount, const QString& label, const QString& toolTip) override;
    void setMenu(QMenu* menu) override;
    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] QRect place() const override;

  private:
    void settle();
    void makeNotifier();
    void makeEmbedded();
    void update();
    [[nodiscard]] NotifierFace face() const;
    /// The colour scheme to assume for the icon's bar if the bar cannot be sampled.
    [[nodiscard]] ColorScheme barScheme() const;
    /// Samples the bar's colours; of several bars, the one at `place`, in device-independent pixels. Deferred
    /// if the active window covers it.
    void lookAtBars(QPoint place);
    [[nodiscard]] static QRect clicked(QPoint given);

    Appearance& appearance_;
    std::unique_ptr<TrayHosts> hosts_;
    std::unique_ptr<NotifierItem> notifier_;
    std::unique_ptr<EmbeddedIcon> embedded_;
    QPointer<QMenu> menu_;
    QTimer look_;
    QPoint lastPlace_;
    bool isLookDue_ = false; // once no window covers the bar
    std::optional<ColorScheme> seenBar_;
    int waitingCount_ = 0;
    QString label_;
    QString toolTip_;
};

} // namespace corvane
