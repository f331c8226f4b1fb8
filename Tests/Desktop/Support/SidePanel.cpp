#include "Desktop/Support/SidePanel.h"

#include "Desktop/Support/XReply.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace corvane::test {

namespace {

xcb_atom_t atom(xcb_connection_t* x, std::string_view name) {
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

SidePanel::SidePanel(const std::string& display, Rect area, Type type)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server answers on " + display);
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const xcb_window_t window = xcb_generate_id(connection_);
    constexpr std::uint32_t gray = 0x303030;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root,
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL, &gray);
    const xcb_atom_t typeName =
        atom(connection_, type == Type::dock ? "_NET_WM_WINDOW_TYPE_DOCK" : "_NET_WM_WINDOW_TYPE_DESKTOP");
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(connection_, "_NET_WM_WINDOW_TYPE"),
                        XCB_ATOM_ATOM, 32, 1, &typeName);
    // Left, right, top and bottom, then the start and the end of each.
    std::array<std::uint32_t, 12> strut{};
    if (type == Type::dock) strut[2] = static_cast<std::uint32_t>(area.height);
    strut[8] = static_cast<std::uint32_t>(area.x);
    strut[9] = static_cast<std::uint32_t>(area.right() - 1);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window,
                        atom(connection_, "_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, strut.size(),
                        strut.data());
    // Requests exactly this geometry: user-specified position and size.
    constexpr std::uint32_t userPosition = 1;
    constexpr std::uint32_t userSize = 2;
    const std::array<std::uint32_t, 18> hints{userPosition | userSize};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
}

SidePanel::~SidePanel() {
    xcb_disconnect(connection_);
}

} // namespace corvane::test
