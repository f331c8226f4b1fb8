#include "Desktop/Support/WindowChanges.h"

#include "Desktop/Support/XReply.h"

#include <xcb/xcb.h>

#include <stdexcept>

namespace corvane::test {

namespace {

// The top bit marks events sent by another client.
constexpr std::uint8_t responseTypeMask = 0x7F;

// Returns once the server has sent all events so far.
void synchronize(xcb_connection_t* connection) {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (!reply) throw std::runtime_error("the X server has gone");
}

} // namespace

WindowChanges::WindowChanges(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server answers on " + display);
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    constexpr std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
    synchronize(connection_);
}

WindowChanges::~WindowChanges() {
    xcb_disconnect(connection_);
}

std::map<std::uint32_t, std::size_t> WindowChanges::take() {
    synchronize(connection_);
    std::map<std::uint32_t, std::size_t> result;
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        if ((event->response_type & responseTypeMask) != XCB_CONFIGURE_NOTIFY) continue;
        ++result[reinterpret_cast<const xcb_configure_notify_event_t*>(event.get())->window];
    }
    return result;
}

} // namespace corvane::test
