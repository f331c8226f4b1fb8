#include "App/Platform/Linux/Windows/PrivateBus.h"

#include <stdexcept>

namespace corvane::test {

PrivateBus::PrivateBus() {
    const QString path = QString::fromStdString((folder_ / "bus").string());
    const auto configuration = folder_ / "bus.conf";
    writeFile(
        configuration,
        "<busconfig><type>session</type><listen>unix:path=" + path.toStdString() +
            R"(</listen><auth>EXTERNAL</auth><policy context="default">)"
            R"(<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>)"
            "</busconfig>");
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--config-file=") + QString::fromStdString(configuration.string())});
    constexpr int timeout = 20000; // milliseconds
    if (!daemon_.waitForReadyRead(timeout)) throw std::runtime_error("no dbus-daemon");
    address_ = QString::fromUtf8(daemon_.readLine().trimmed());
    qputenv("DBUS_SESSION_BUS_ADDRESS", address_.toUtf8());
}

PrivateBus::~PrivateBus() {
    daemon_.kill();
    daemon_.waitForFinished();
}

} // namespace corvane::test
