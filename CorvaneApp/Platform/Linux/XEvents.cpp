#include "Platform/Linux/XEvents.h"

#include "Platform/Linux/X11.h"

#include <QCoreApplication>
#include <QPointer>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

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

bool XEvents::watchSelection(std::uint32_t selection) {
    xcb_connection_t* const x = x11::connection();
    if (x == nullptr) return false;
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(x, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) return false;
    // The server serves the extension only to clients that have requested a version.
    xcb_discard_reply(
        x, xcb_xfixes_query_version(x, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION).sequence);
    xcb_xfixes_select_selection_input(x, x11::rootWindow(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    selectionEvent_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    return true;
}

bool XEvents::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    // The top bit marks events sent by another client.
    constexpr std::uint8_t responseTypeMask = 0x7F;
    // X11 reports the directions of the wheel as buttons.
    constexpr std::uint8_t firstWheelButton = 4;
    constexpr std::uint8_t lastWheelButton = 7;
    if (eventType != "xcb_generic_event_t") return false;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    const auto type = static_cast<std::uint8_t>(event->response_type & responseTypeMask);
    if (type == selectionEvent_) {
        Q_EMIT selectionOwnerChanged(
            static_cast<const xcb_xfixes_selection_notify_event_t*>(message)->selection);
        return false;
    }
    switch (type) {
    case XCB_PROPERTY_NOTIFY:
        Q_EMIT propertyChanged(static_cast<const xcb_property_notify_event_t*>(message)->atom);
        break;
    case XCB_BUTTON_PRESS: {
        const auto* const press = static_cast<const xcb_button_press_event_t*>(message);
        if (press->detail < firstWheelButton || press->detail > lastWheelButton)
            Q_EMIT buttonPressed(press->event);
        break;
    }
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
