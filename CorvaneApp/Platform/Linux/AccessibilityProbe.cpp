#include "Platform/Linux/AccessibilityProbe.h"

#include "Platform/Linux/BusProbe.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QString>

namespace corvane {

namespace {

constexpr QLatin1String connectionName("accessibility-probe");

/// Whether the registry is running but does not reply. If it is not running, Qt's first call starts it.
bool registryHangs(const std::string& address, std::chrono::milliseconds patience) {
    QDBusMessage ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/registry"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    ping.setAutoStartService(false);
    const QDBusMessage reply = QDBusConnection::connectToBus(QString::fromStdString(address), connectionName)
                                   .call(ping, QDBus::Block, static_cast<int>(patience.count()));
    QDBusConnection::disconnectFromBus(connectionName);
    return reply.errorName() == QDBusError::errorString(QDBusError::NoReply);
}

} // namespace

bool accessibilityHangs(const std::string& address, std::chrono::milliseconds patience) {
    return !address.empty() && (busprobe::hangs(address, patience) || registryHangs(address, patience));
}

} // namespace corvane
