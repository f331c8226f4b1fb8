#include "Platform/Linux/KWinScript.h"

#include "Platform/Linux/KWinWindows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>

#include <utility>

namespace corvane {

namespace {

constexpr QLatin1String service("org.kde.KWin");
constexpr QLatin1String scriptingPath("/Scripting");
constexpr QLatin1String scriptingInterface("org.kde.kwin.Scripting");
constexpr QLatin1String scriptInterface("org.kde.kwin.Script");

// KWin 5 and 6 name these properties differently. The stacking order, where KWin exposes it, is the order of
// use. KWin 5 leaves holes in an array that was filled by unshift and then sorted.
constexpr QLatin1String scriptText(
    R"(var all = workspace.windowList ? workspace.windowList() : workspace.clientList();
var windows = [];
for (var i = all.length; i-- > 0;) windows.push(all[i]);
windows.sort(function (one, other) { return (other.stackingOrder || 0) - (one.stackingOrder || 0); });
var list = windows.map(function (w) {
    return { pid: w.pid, id: w.windowId || 0, name: String(w.resourceClass), title: String(w.caption) };
});
callDBus("%1", "%2", "org.corvane.WindowChoice", "choose", JSON.stringify(list), function (chosen) {
    if (!(chosen >= 0 && chosen < windows.length)) return;
    if (workspace.windowList) workspace.activeWindow = windows[chosen];
    else workspace.activeClient = windows[chosen];
    callDBus("%1", "%2", "org.corvane.WindowChoice", "raised");
});
)");

} // namespace

KWinScript::KWinScript(WindowSearch search, WindowRaiser::Report report, QObject& context)
    : QObject(&context)
    , search_(std::move(search))
    , report_(std::move(report))
    , name_(QStringLiteral("corvane-%1").arg(QRandomGenerator::global()->generate64()))
    , path_(QStringLiteral("/org/corvane/Corvane/%1").arg(QRandomGenerator::global()->generate64())) {
    limit_.setSingleShot(true);
    connect(&limit_, &QTimer::timeout, this, [this] { finish(false); });
}

KWinScript::~KWinScript() {
    unload(); // unless it has reported
    QDBusConnection::sessionBus().unregisterObject(path_);
}

void KWinScript::start(std::chrono::milliseconds limit) {
    limit_.start(limit);
    if (!QDBusConnection::sessionBus().registerObject(path_, this,
                                                      QDBusConnection::ExportScriptableInvokables) ||
        !writeScript()) {
        limit_.start(0);
        return;
    }
    isRequested_ = true;
    call(scriptingPath, scriptingInterface, QStringLiteral("loadScript"), {file_.fileName(), name_},
         [this](const QDBusMessage& reply) {
             const QVariant number = reply.arguments().value(0);
             if (reply.type() == QDBusMessage::ReplyMessage && number.typeId() == QMetaType::Int &&
                 number.toInt() >= 0) {
                 run(number.toInt(), false);
             } else {
                 finish(false);
             }
         });
}

bool KWinScript::writeScript() {
    // The bus assigns names of this form; nothing else may be inserted into the script.
    static const QRegularExpression ownName(QStringLiteral(R"(\A:[0-9.]+\z)"));
    const QString address = QDBusConnection::sessionBus().baseService();
    if (!ownName.match(address).hasMatch()) return false;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    file_.setFileTemplate((folder.isEmpty() ? QDir::tempPath() : folder) +
                          QStringLiteral("/corvane-XXXXXX.js"));
    if (!file_.open()) return false;
    const QByteArray text = QString(scriptText).arg(address, path_).toUtf8();
    return file_.write(text) == text.size() && file_.flush();
}

void KWinScript::run(int number, bool isOldPath) {
    const QString path =
        (isOldPath ? QStringLiteral("/%1") : QStringLiteral("/Scripting/Script%1")).arg(number);
    call(path, scriptInterface, QStringLiteral("run"), {},
         [this, number, isOldPath](const QDBusMessage& reply) {
             if (reply.type() == QDBusMessage::ReplyMessage) return; // the script will call back
             if (isOldPath) {
                 finish(false);
             } else {
                 run(number, true);
             }
         });
}

void KWinScript::call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments,
                      std::function<void(const QDBusMessage& reply)> finished) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [finished = std::move(finished)](QDBusPendingCallWatcher* done) {
                done->deleteLater();
                finished(done->reply());
            });
}

int KWinScript::choose(const QString& windows) {
    const std::optional<std::size_t> chosen = chooseWindow(kwinWindows(windows.toUtf8()), search_);
    // Deferred until the script has its reply.
    if (!chosen) limit_.start(0);
    return chosen ? static_cast<int>(*chosen) : -1;
}

void KWinScript::raised() {
    finish(true);
}

void KWinScript::finish(bool isFound) {
    if (!report_) return;
    limit_.stop();
    unload();
    deleteLater();
    std::exchange(report_, {})(isFound);
}

void KWinScript::unload() {
    if (!std::exchange(isRequested_, false)) return;
    QDBusMessage message = QDBusMessage::createMethodCall(service, scriptingPath, scriptingInterface,
                                                          QStringLiteral("unloadScript"));
    message.setAutoStartService(false);
    message << name_;
    // The reply does not matter, even if there is no such script.
    QDBusConnection::sessionBus().send(message);
}

} // namespace corvane
