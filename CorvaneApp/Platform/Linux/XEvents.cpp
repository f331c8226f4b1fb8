#include "Platform/Linux/XEvents.h"

#include <QCoreApplication>
#include <QPointer>
#include <xcb/xcb.h>

namespace corvane {

XEvents& XEvents::instance() {
    static QPointer<XEvents> events;
    if (!events) events = new XEvents(QCoreApplication::instance());
    return *events;
}

XEvents::XEvents(QObject* parent)
    : QObject(parent) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XEvents::~XEvents() = default;

bool XEvents::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    // The top bit marks events sent by another client.
    constexpr std::uint8_t responseTypeMask = 0x7F;
    if (eventType != "xcb_generic_event_t") return false;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & responseTypeMask) {
    case XCB_PROPERTY_NOTIFY:
        Q_EMIT propertyChanged(static_cast<const xcb_property_notify_event_t*>(message)->atom);
        break;
    case XCB_CLIENT_MESSAGE: {
        const auto* const client = static_cast<const xcb_client_message_event_t*>(message);
        Q_EMIT messageReceived(client->type, client->data.data32[1]);
        break;
    }
    default:
        break;
    }
    return false;
}

} // namespace corvane
