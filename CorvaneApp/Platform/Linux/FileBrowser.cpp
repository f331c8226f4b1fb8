#include "Platform/Linux/FileBrowser.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace corvane {

namespace {

QUrl url(const std::filesystem::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

} // namespace

void LinuxFileBrowser::reveal(const std::filesystem::path& file) {
    const QUrl folder = url(file.parent_path());
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QDesktopServices::openUrl(folder);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(url(file).toString(QUrl::FullyEncoded)) << QString();
    // Asynchronous, since a file manager can be slow to start.
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [folder](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         if (QDBusPendingReply<>(*finished).isError()) QDesktopServices::openUrl(folder);
                     });
}

} // namespace corvane
