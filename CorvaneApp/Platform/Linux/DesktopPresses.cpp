#include "Platform/Linux/DesktopPresses.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <QRect>
#include <xcb/xcb_icccm.h>

#include <array>
#include <optional>
#include <string>

namespace corvane {

namespace {

constexpr std::uint8_t alphaDepth = 32;

// The visual of windows with an alpha channel; 0 if the screen has none.
xcb_visualid_t alphaVisual() {
    for (auto depths = xcb_screen_allowed_depths_iterator(x11::screen()); depths.rem > 0;
         xcb_depth_next(&depths)) {
        if (depths.data->depth != alphaDepth) continue;
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) return visuals.data->visual_id;
        }
    }
    return 0;
}

// Creates an input-only window at the bottom of the stacking order, which window managers do not manage.
xcb_window_t makeUnmanaged(xcb_connection_t* x, std::uint16_t width, std::uint16_t height) {
    const xcb_window_t window = xcb_generate_id(x);
    constexpr std::array<std::uint32_t, 2> attributes{1, XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(x, 0, window, x11::rootWindow(), 0, 0, width, height, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, attributes.data());
    constexpr std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(x, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    return window;
}

// Creates a transparent window of the desktop type, which window managers manage but never focus.
xcb_window_t makeManaged(xcb_connection_t* x, std::uint16_t width, std::uint16_t height) {
    const xcb_visualid_t visual = alphaVisual();
    if (visual == 0) return XCB_WINDOW_NONE;
    const xcb_colormap_t colors = xcb_generate_id(x);
    xcb_create_colormap(x, XCB_COLORMAP_ALLOC_NONE, colors, x11::rootWindow(), visual);
    const xcb_window_t window = xcb_generate_id(x);
    const std::array<std::uint32_t, 4> attributes{0, 0, XCB_EVENT_MASK_BUTTON_PRESS, colors};
    xcb_create_window(x, alphaDepth, window, x11::rootWindow(), 0, 0, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      attributes.data());
    xcb_free_colormap(x, colors);
    const xcb_atom_t type = x11::atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, x11::atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32,
                        1, &type);
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 0);
    xcb_icccm_set_wm_hints(x, window, &hints);
    return window;
}

} // namespace

DesktopPresses::DesktopPresses() {
    connect(&XEvents::instance(), &XEvents::buttonPressed, this, [this](std::uint32_t window) {
        if (window_ != XCB_WINDOW_NONE && window == window_) Q_EMIT pressed();
    });
}

DesktopPresses::~DesktopPresses() {
    stop();
}

void DesktopPresses::start() {
    xcb_connection_t* const x = x11::connection();
    if (x == nullptr || window_ != XCB_WINDOW_NONE) return;
    // Mutter draws the desktop itself, in a window of its own above the unmanaged ones at the bottom. In a
    // Wayland session it passes presses on only to what X11 programs draw.
    const std::string manager = x11::windowManager();
    const bool isMutter = manager == "GNOME Shell" || manager == "Mutter";
    if (!isMutter && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return;
    const std::optional<QRect> desktop = x11::rootGeometry(x11::rootWindow());
    if (!desktop) return;
    const auto width = static_cast<std::uint16_t>(desktop->width());
    const auto height = static_cast<std::uint16_t>(desktop->height());
    window_ = isMutter ? makeManaged(x, width, height) : makeUnmanaged(x, width, height);
    if (window_ != XCB_WINDOW_NONE) xcb_map_window(x, window_);
    x11::flush();
}

void DesktopPresses::stop() {
    xcb_connection_t* const x = x11::connection();
    if (x == nullptr || window_ == XCB_WINDOW_NONE) return;
    xcb_destroy_window(x, window_);
    x11::flush();
    window_ = XCB_WINDOW_NONE;
}

} // namespace corvane
