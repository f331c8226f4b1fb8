#include "Platform/Linux/ScreenLockers.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XReply.h"

#include <QApplication>
#include <QRect>
#include <QScreen>
#include <xcb/shape.h>

#include <algorithm>

namespace corvane::x11 {

namespace {

// A frame has the client window as a child; some have another window between the two.
constexpr int deepestClient = 3;

std::vector<xcb_window_t> children(xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
    if (!tree) return {};
    const xcb_window_t* const first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

bool isOwn(xcb_window_t window) {
    const xcb_setup_t* const setup = xcb_get_setup(connection());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

bool fillsAMonitor(const QRect& area) {
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&area](const QScreen* screen) {
        // Qt leaves a screen's origin in device pixels and scales only its size.
        const QRect geometry = screen->geometry();
        return area.contains(
            QRect(geometry.topLeft(), (QSizeF(geometry.size()) * screen->devicePixelRatio()).toSize()));
    });
}

/// Whether the window is managed by a window manager, or is the frame of a managed one.
bool isManaged(xcb_window_t window, int depth = 0) {
    if (!numbers(window, "WM_STATE").empty()) return true;
    if (depth == deepestClient) return false;
    const std::vector<xcb_window_t> inner = children(window);
    return std::any_of(inner.begin(), inner.end(),
                       [depth](xcb_window_t child) { return isManaged(child, depth + 1); });
}

/// Whether the window takes pointer input at all; the overlay windows of compositing managers do not.
bool takesInput(xcb_window_t window) {
    const Reply<xcb_shape_get_rectangles_reply_t> shape(xcb_shape_get_rectangles_reply(
        connection(), xcb_shape_get_rectangles(connection(), window, XCB_SHAPE_SK_INPUT), nullptr));
    return !shape || xcb_shape_get_rectangles_rectangles_length(shape.get()) > 0;
}

bool isKeyboardGrabbedByOthers() {
    // A menu of our own holds the grab, and would lose it by the attempt.
    if (QApplication::activePopupWidget() != nullptr) return false;
    xcb_connection_t* const x = connection();
    const xcb_grab_keyboard_cookie_t attempt =
        xcb_grab_keyboard(x, 0, rootWindow(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    // At once, so that no key event arrives here in between. This leaves another program's grab alone.
    xcb_ungrab_keyboard(x, XCB_CURRENT_TIME);
    const Reply<xcb_grab_keyboard_reply_t> grab(xcb_grab_keyboard_reply(x, attempt, nullptr));
    return grab && grab->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

} // namespace

std::vector<xcb_window_t> screenLockers() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return {};
    struct Questions {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Questions> questions;
    for (const xcb_window_t window : children(rootWindow())) {
        if (!isOwn(window))
            questions.push_back({window, xcb_get_window_attributes(x, window), xcb_get_geometry(x, window)});
    }
    std::vector<xcb_window_t> candidates;
    for (const Questions& question : questions) {
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(x, question.attributes, nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(x, question.geometry, nullptr));
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->override_redirect == 0 || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        if (fillsAMonitor({geometry->x, geometry->y, geometry->width, geometry->height}))
            candidates.push_back(question.window);
    }
    std::erase_if(candidates, [](xcb_window_t window) { return !takesInput(window) || isManaged(window); });
    // The attempt to grab the keyboard is made only if there are candidates.
    if (candidates.empty() || !isKeyboardGrabbedByOthers()) return {};
    return candidates;
}

} // namespace corvane::x11
