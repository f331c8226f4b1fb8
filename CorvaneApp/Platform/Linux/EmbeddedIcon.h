#pragma once

#include "Platform/Linux/TrayBar.h"
#include "Style/Tokens.h"

#include <QObject>
#include <QRect>
#include <QString>
#include <QSystemTrayIcon>
#include <QTimer>

class QMenu;

namespace corvane {

/// An icon in a tray that embeds windows. Must not be created while there is a StatusNotifierItem host, since
/// Qt would give its icon to that host instead, nor while a StatusNotifierItem watcher does not reply, since
/// Qt would wait for it. Main thread only.
class EmbeddedIcon : public QObject {
    Q_OBJECT

  public:
    /// `menu` may be null.
    explicit EmbeddedIcon(QMenu* menu);

    /// `label` is for assistive technology; `otherwise` is the colour scheme to assume if the bar's own is
    /// unknown.
    void show(int waitingCount, const QString& label, const QString& toolTip, ColorScheme otherwise);

    /// Empty while no tray embeds it.
    [[nodiscard]] QRect place() const { return icon_.geometry(); }

    /// Asks the tray again, in a moment, to embed the icon if it has not done so.
    void insistSoon() { insistence_.start(); }

  Q_SIGNALS:
    void pressed(QRect place);
    /// The bar's colours have become known or have changed.
    void barChanged();

  private:
    void insist();

    TrayBar bar_;
    QSystemTrayIcon icon_;
    QTimer insistence_;
};

} // namespace corvane
