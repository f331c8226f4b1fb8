#include "App/Platform/Linux/Windows/FakeKWin.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace corvane::test {

namespace {

constexpr QLatin1String connectionName("kwin");
constexpr QLatin1String scriptingPath("/Scripting");

} // namespace

void FakeKWinScript::run() {
    if (isStuck) return;
    static const QRegularExpression call(
        QStringLiteral(R"re(callDBus\("([^"]*)", "([^"]*)", "([^"]*)", "choose")re"));
    const QRegularExpressionMatch match = call.match(text);
    QDBusMessage message = QDBusMessage::createMethodCall(match.captured(1), match.captured(2),
                                                          match.captured(3), QStringLiteral("choose"));
    message << description;
    auto* const watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), &context);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, &context, [this, match](QDBusPendingCallWatcher* done) {
            const QDBusPendingReply<int> reply = *done;
            done->deleteLater();
            if (reply.isError()) return;
            chosen = reply.value();
            if (chosen < 0) return;
            bus->send(QDBusMessage::createMethodCall(match.captured(1), match.captured(2), match.captured(3),
                                                     QStringLiteral("raised")));
        });
}

FakeKWin::FakeKWin(const QString& address, Version version)
    : version_(version) {
    script.bus = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address, connectionName));
    script.bus->registerObject(scriptingPath, this, QDBusConnection::ExportScriptableInvokables);
    if (!script.bus->registerService(QStringLiteral("org.kde.KWin"))) throw std::runtime_error("no name");
}

FakeKWin::~FakeKWin() {
    // A call that arrives while the connection closes would be replied to on the destroyed connection.
    script.bus->unregisterObject(scriptingPath);
    script.bus->unregisterObject(path_);
    QCoreApplication::removePostedEvents(this);
    QCoreApplication::removePostedEvents(&script);
    script.bus.reset();
    QDBusConnection::disconnectFromBus(connectionName);
}

int FakeKWin::loadScript(const QString& newFile, const QString& name) {
    if (isHanging) {
        setDelayedReply(true);
        return 0;
    }
    if (isRefusing) return -1;
    QFile opened(newFile);
    if (!opened.open(QIODevice::ReadOnly)) return -1;
    script.text = QString::fromUtf8(opened.readAll());
    file = newFile;
    loaded.append(name);
    const int number = scriptCount++;
    path_ = (version_ == Version::five ? QStringLiteral("/%1") : QStringLiteral("/Scripting/Script%1"))
                .arg(number);
    script.bus->registerObject(path_, &script, QDBusConnection::ExportScriptableInvokables);
    return number;
}

bool FakeKWin::unloadScript(const QString& name) {
    script.bus->unregisterObject(path_);
    return loaded.removeOne(name);
}

} // namespace corvane::test
