#include "Platform/Linux/TrayHosts.h"

#include "Platform/Linux/X11.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>

namespace corvane {

namespace {

constexpr QLatin1String service("org.kde.StatusNotifierWatcher");
constexpr QLatin1String path("/StatusNotifierWatcher");
constexpr std::chrono::milliseconds answerTimeout{3000};
constexpr const char* traySelection = "_NET_SYSTEM_TRAY_S0";
constexpr std::uint8_t sentEvent = 0x80;

} // namespace

TrayHosts::TrayHosts()
    : watcher_(service, QDBusConnection::sessionBus(),
               QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
    , managerMessage_(x11::atom("MANAGER"))
    , traySelection_(x11::atom(traySelection)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        isNotifierKnown_ = true;
        return;
    }
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayHosts::ask);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setNotifierHost(false); });
    // A watcher may come first and the panel that shows icons much later.
    bus.connect(service, path, service, QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(hostRegistered()));
    bus.connect(service, path, service, QStringLiteral("StatusNotifierHostUnregistered"), this,
                SLOT(hostRegistered()));
    ask();
}

TrayHosts::~TrayHosts() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool TrayHosts::hasEmbeddingHost() const {
    xcb_connection_t* const x = x11::connection();
    if (x == nullptr) return false;
    xcb_get_selection_owner_reply_t* const reply =
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, traySelection_), nullptr);
    const bool isOwned = reply != nullptr && reply->owner != XCB_WINDOW_NONE;
    std::free(reply);
    return isOwned;
}

void TrayHosts::hostRegistered() {
    ask();
}

void TrayHosts::ask() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setAutoStartService(false);
    call << service << QStringLiteral("IsStatusNotifierHostRegistered");
    auto* const pending = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(answerTimeout.count())), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
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

// A host of the embedding kind tells every program when it starts, by a message to the root window.
bool TrayHosts::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") return false;
    const auto* const event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & ~sentEvent) != XCB_CLIENT_MESSAGE) return false;
    const auto* const client = static_cast<xcb_client_message_event_t*>(message);
    if (client->type == managerMessage_ && client->data.data32[1] == traySelection_) {
        // Qt's own icon takes notice of the same message.
        QMetaObject::invokeMethod(this, &TrayHosts::changed, Qt::QueuedConnection);
    }
    return false;
}

} // namespace corvane
