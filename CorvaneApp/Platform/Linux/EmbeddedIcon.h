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

/// An icon in a tray that embeds windows. Must not be created while there is a host of StatusNotifierItems:
/// Qt would give its icon to that one instead; nor while a watcher of those does not reply: Qt would wait for
/// it. Main thread only.
class EmbeddedIcon : public QObject {
    Q_OBJECT

  public:
    /// `menu` may be null.
    explicit EmbeddedIcon(QMenu* menu);

    /// `label` is for assistive technology; `otherwise` is the bar's appearance unless it can be seen.
    void show(int waitingCount, const QString& label, const QString& toolTip, ColorScheme otherwise);

    /// Empty while no tray embeds it.
    [[nodiscard]] QRect place() const { return icon_.geometry(); }

    /// Asks the tray again to embed the icon, in a moment, if it has not.
    void insistSoon() { insistence_.start(); }

  Q_SIGNALS:
    void pressed(QRect place);
    /// The bar can be seen, or has other colours.
    void barChanged();

  private:
    void insist();

    TrayBar bar_;
    QSystemTrayIcon icon_;
    QTimer insistence_;
};

} // namespace corvane
