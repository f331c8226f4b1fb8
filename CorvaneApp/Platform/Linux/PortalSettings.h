#pragma once

#include "Platform/Linux/DesktopLook.h"

#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

namespace corvane {

/// The user's preferences from the desktop portal, kept up to date. Until it replies, the values are those
/// without a portal.
class PortalSettings : public QObject {
    Q_OBJECT

  public:
    PortalSettings();

    [[nodiscard]] const PortalLook& look() const { return look_; }

  Q_SIGNALS:
    void changed();

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    void ask(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, QVariant value);

    PortalLook look_;
};

} // namespace corvane
