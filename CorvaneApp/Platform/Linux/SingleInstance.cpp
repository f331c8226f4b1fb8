#include "Platform/Linux/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QMetaMethod>

#include <chrono>
#include <optional>
#include <utility>

namespace corvane {

namespace {

constexpr QLatin1String busName("org.corvane.Corvane");
constexpr QLatin1String objectPath("/org/corvane/Corvane");
constexpr QLatin1String interface("org.freedesktop.Application");

// After this, a busy instance still gets the request; this process only stops waiting for its reply.
constexpr std::chrono::milliseconds answerTimeout{5000};
// The bus sets it in the programs that it starts itself.
constexpr const char* starterVariable = "DBUS_STARTER_BUS_TYPE";
// How often the name's owner may change or vanish before this process gives up.
constexpr int mostAttempts = 20;

} // namespace

LinuxSingleInstance::LinuxSingleInstance(StartupToken startup, Start start)
    : startup_(std::move(startup))
    , start_(start) {}

LinuxSingleInstance::~LinuxSingleInstance() = default;

bool LinuxSingleInstance::claim() {
    const Outcome outcome = claimOnBus();
    isStartedByRequest_ = outcome == Outcome::first && qEnvironmentVariableIsSet(starterVariable);
    // Child processes, such as a file manager, have not been started by the bus.
    for (const char* const variable : {starterVariable, "DBUS_STARTER_ADDRESS"})
        qunsetenv(variable);
    if (outcome != Outcome::noBus) return outcome == Outcome::first;
    lock_ = std::make_unique<SingleInstanceLock>(SingleInstanceLock::standardFolder());
    connect(lock_.get(), &SingleInstanceLock::asked, this,
            [this](const std::string& message) { tell(StartupToken::fromMessage(message)); });
    return lock_->claim(start_ == Start::byHand ? std::optional(startup_.message()) : std::nullopt);
}

LinuxSingleInstance::Outcome LinuxSingleInstance::claimOnBus() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Before the name is claimed, since others may call as soon as they see the name.
    if (!bus.isConnected() ||
        !bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableInvokables))
        return Outcome::noBus;
    for (int attempt = 0; attempt < mostAttempts && bus.isConnected(); ++attempt) {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> taken =
            bus.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                             QDBusConnectionInterface::DontAllowReplacement);
        if (!taken.isValid()) break;
        if (taken.value() == QDBusConnectionInterface::ServiceRegistered) return Outcome::first;
        if (start_ == Start::atLogin) return Outcome::second;

        QDBusMessage call =
            QDBusMessage::createMethodCall(busName, objectPath, interface, QStringLiteral("Activate"));
        call.setAutoStartService(false);
        call << startup_.platformData();
        const QDBusMessage answer = bus.call(call, QDBus::Block, static_cast<int>(answerTimeout.count()));
        const QString error = answer.errorName();
        const bool isGone = error == QDBusError::errorString(QDBusError::ServiceUnknown) ||
                            error == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
        // An owner that exits instead of replying causes the same error as a timeout; only the name
        // distinguishes the two.
        if (!isGone && bus.interface()->isServiceRegistered(busName)) return Outcome::second;
    }
    bus.unregisterObject(objectPath);
    return Outcome::noBus;
}

void LinuxSingleInstance::Activate(const QVariantMap& platformData) {
    tell(StartupToken::fromPlatformData(platformData));
}

void LinuxSingleInstance::tell(const StartupToken& startup) {
    Q_EMIT startedWith(startup);
    // The bus delivers the call for which it started the application: that is the first start, not a second
    // one.
    if (std::exchange(isStartedByRequest_, false)) return;
    isUntold_ = !isSignalConnected(QMetaMethod::fromSignal(&SingleInstance::reopened));
    if (!isUntold_) Q_EMIT reopened();
}

// Delivers a request that arrived early: the name is claimed well before windows can be opened.
void LinuxSingleInstance::connectNotify(const QMetaMethod& signal) {
    if (signal != QMetaMethod::fromSignal(&SingleInstance::reopened) || !std::exchange(isUntold_, false))
        return;
    QMetaObject::invokeMethod(this, &LinuxSingleInstance::reopened, Qt::QueuedConnection);
}

void LinuxSingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void LinuxSingleInstance::ActivateAction(const QString& /*action*/, const QVariantList& /*parameter*/,
                                         const QVariantMap& platformData) {
    Activate(platformData);
}

} // namespace corvane
