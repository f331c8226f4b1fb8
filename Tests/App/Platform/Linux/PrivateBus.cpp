#include "App/Platform/Linux/PrivateBus.h"

#include "Support/MessageBus.h"

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace corvane::test {

PrivateBus::PrivateBus() {
    const auto configuration = folder_ / "bus.conf";
    writeFile(configuration, busConfiguration(folder_ / "bus"));
    // Also if this program is killed.
    daemon_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
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
