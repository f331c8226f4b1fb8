#include "Platform/Linux/TrayHosts.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <xcb/xcb.h>

#include <limits>

namespace corvane {

namespace {

constexpr QLatin1String service("org.kde.StatusNotifierWatcher");
constexpr QLatin1String path("/StatusNotifierWatcher");
// The watcher may reply much later, at the end of a busy login. If it exits, the bus replies in its place.
constexpr int noTimeout = std::numeric_limits<int>::max();

} // namespace

TrayHosts::TrayHosts()
    : watcher_(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
    , traySelection_(x11::atom(x11::traySelection())) {
    // An embedding host announces its start by a message to the root window. Queued, since Qt's own icon
    // handles the same message.
    connect(
        &XEvents::instance(), &XEvents::messageReceived, this,
        [this, manager = x11::atom("MANAGER")](xcb_atom_t type, xcb_atom_t selection) {
            if (type == manager && selection == traySelection_) Q_EMIT changed();
        },
        Qt::QueuedConnection);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        isNotifierKnown_ = true;
        return;
    }
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*before*/, const QString& now) {
                if (now.isEmpty())
                    setNotifierHost(false);
                else
                    ask();
            });
    // The StatusNotifierWatcher may start first and the host much later.
    bus.connect(service, path, service, QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(hostRegistered()));
    bus.connect(service, path, service, QStringLiteral("StatusNotifierHostUnregistered"), this,
                SLOT(hostRegistered()));
    ask();
}

bool TrayHosts::hasEmbeddingHost() const {
    return x11::selectionOwner(x11::traySelection()) != XCB_WINDOW_NONE;
}

void TrayHosts::hostRegistered() {
    ask();
}

void TrayHosts::ask() {
    isNotifierKnown_ = false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setAutoStartService(false);
    call << service << QStringLiteral("IsStatusNotifierHostRegistered");
    // An earlier call may have gone to a watcher that has lost the name since.
    delete asked_;
    asked_ = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, noTimeout), this);
    connect(asked_, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        setNotifierHost(!reply.isError() && reply.value().variant().toBool());
    });
}

void TrayHosts::setNotifierHost(bool isThere) {
    isNotifierKnown_ = true;
    hasNotifierHost_ = isThere;
    Q_EMIT changed();
}

} // namespace corvane
