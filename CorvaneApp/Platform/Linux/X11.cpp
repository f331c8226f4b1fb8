#include "Platform/Linux/X11.h"

#include "Platform/Linux/XReply.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>
#include <xcb/shape.h>
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>

namespace corvane::x11 {

namespace {

void setShape(xcb_window_t window, xcb_shape_kind_t kind, const std::vector<QRect>& rectangles) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    std::vector<xcb_rectangle_t> shape;
    shape.reserve(rectangles.size());
    for (const QRect& rectangle : rectangles) {
        shape.push_back({static_cast<std::int16_t>(rectangle.x()), static_cast<std::int16_t>(rectangle.y()),
                         static_cast<std::uint16_t>(rectangle.width()),
                         static_cast<std::uint16_t>(rectangle.height())});
    }
    xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                         static_cast<std::uint32_t>(shape.size()), shape.data());
}

// The EWMH atoms; null where there is no X server.
xcb_ewmh_connection_t* ewmh() {
    static xcb_ewmh_connection_t shared{};
    if (connection() == nullptr) return nullptr;
    if (shared.connection == nullptr &&
        xcb_ewmh_init_atoms_replies(&shared, xcb_ewmh_init_atoms(connection(), &shared), nullptr) == 0) {
        shared = {};
        return nullptr;
    }
    return &shared;
}

std::optional<std::uint32_t> cardinal(xcb_get_property_cookie_t cookie) {
    std::uint32_t value = 0;
    if (xcb_ewmh_get_cardinal_reply(ewmh(), cookie, &value, nullptr) == 0) return std::nullopt;
    return value;
}

// The active window that the window manager reports: none if it does not report any, XCB_WINDOW_NONE if no
// window is active.
std::optional<xcb_window_t> activeWindowHint() {
    xcb_ewmh_connection_t* const x = ewmh();
    if (x == nullptr) return std::nullopt;
    xcb_window_t window = XCB_WINDOW_NONE;
    if (xcb_ewmh_get_active_window_reply(x, xcb_ewmh_get_active_window(x, screenNumber()), &window,
                                         nullptr) == 0)
        return std::nullopt;
    return window;
}

// The window that identifies the running window manager. The properties on the root window outlive a window
// manager that has died, but its own window does not.
xcb_window_t windowManagersWindow() {
    constexpr const char* check = "_NET_SUPPORTING_WM_CHECK";
    const std::vector<std::uint32_t> manager = numbers(rootWindow(), check);
    const bool isThere = !manager.empty() && numbers(manager.front(), check) == manager;
    return isThere ? manager.front() : xcb_window_t{XCB_WINDOW_NONE};
}

// `area` without a panel's struts, the strips reserved along the root window's edges.
QRect withoutStruts(QRect area, xcb_window_t window, const QRect& root) {
    xcb_ewmh_wm_strut_partial_t kept;
    if (xcb_ewmh_get_wm_strut_partial_reply(ewmh(), xcb_ewmh_get_wm_strut_partial(ewmh(), window), &kept,
                                            nullptr) == 0) {
        return area;
    }
    const auto number = [](std::uint32_t value) { return static_cast<int>(value); };
    const auto strip = [](int left, int top, int right, int bottom) {
        return QRect(QPoint(left, top), QPoint(right, bottom));
    };
    const QRect left =
        strip(0, number(kept.left_start_y), number(kept.left) - 1, number(kept.left_end_y)) & area;
    const QRect right = strip(root.right() + 1 - number(kept.right), number(kept.right_start_y), root.right(),
                              number(kept.right_end_y)) &
                        area;
    const QRect top = strip(number(kept.top_start_x), 0, number(kept.top_end_x), number(kept.top) - 1) & area;
    const QRect bottom = strip(number(kept.bottom_start_x), root.bottom() + 1 - number(kept.bottom),
                               number(kept.bottom_end_x), root.bottom()) &
                         area;
    // A panel on another monitor, between this one and the root window's edge, reserves nothing on this one.
    QRect result = area;
    if (!left.isEmpty() && left.width() < area.width()) result.setLeft(left.right() + 1);
    if (!right.isEmpty() && right.width() < area.width()) result.setRight(right.left() - 1);
    if (!top.isEmpty() && top.height() < area.height()) result.setTop(top.bottom() + 1);
    if (!bottom.isEmpty() && bottom.height() < area.height()) result.setBottom(bottom.top() - 1);
    return result;
}

} // namespace

xcb_connection_t* connection() {
    auto* const native =
        qGuiApp != nullptr ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native != nullptr ? native->connection() : nullptr;
}

int screenNumber() {
    static const int wanted = [] {
        char* host = nullptr;
        int display = 0;
        int screen = 0;
        if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) return 0;
        std::free(host);
        return screen;
    }();
    xcb_connection_t* const x = connection();
    // Qt may have been given another display than that of the environment.
    return x != nullptr && wanted < xcb_setup_roots_length(xcb_get_setup(x)) ? wanted : 0;
}

const xcb_screen_t* screen() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return nullptr;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(x));
    for (int i = screenNumber(); i > 0; --i)
        xcb_screen_next(&screens);
    return screens.data;
}

xcb_window_t rootWindow() {
    const xcb_screen_t* const found = screen();
    return found != nullptr ? found->root : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t atom(const std::string& name) {
    // Cached for good: an atom is valid as long as the server runs.
    static std::map<std::string, xcb_atom_t> atoms;
    xcb_connection_t* const x = connection();
    if (x == nullptr) return XCB_ATOM_NONE;
    const auto known = atoms.find(name);
    if (known != atoms.end()) return known->second;
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    return reply ? atoms.emplace(name, reply->atom).first->second : xcb_atom_t{XCB_ATOM_NONE};
}

void flush() {
    if (xcb_connection_t* const x = connection()) xcb_flush(x);
}

xcb_window_t selectionOwner(const std::string& selection) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return XCB_WINDOW_NONE;
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atom(selection)), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& name) {
    constexpr std::uint32_t maxLength = 4096;
    xcb_connection_t* const x = connection();
    if (x == nullptr) return {};
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(name), XCB_ATOM_ANY, 0, maxLength), nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

void watchProperties(xcb_window_t window) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    // Qt may have selected events of that window on the same connection: they have to stay selected.
    const Reply<xcb_get_window_attributes_reply_t> before(
        xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window), nullptr));
    if (!before) return;
    const std::uint32_t events = before->your_event_mask | XCB_EVENT_MASK_PROPERTY_CHANGE;
    // Checked, since the window may be gone by now: that is no error to report.
    const Reply<xcb_generic_error_t> error(
        xcb_request_check(x, xcb_change_window_attributes_checked(x, window, XCB_CW_EVENT_MASK, &events)));
}

QImage screenPixels(const QRect& area) {
    constexpr int bytesPerPixel = 4;
    xcb_connection_t* const x = connection();
    if (x == nullptr || area.isEmpty()) return {};
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, rootWindow(), static_cast<std::int16_t>(area.x()),
                      static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                      static_cast<std::uint16_t>(area.height()), ~std::uint32_t{0}),
        nullptr));
    if (!reply || reply->depth < 24 ||
        xcb_get_image_data_length(reply.get()) != area.width() * area.height() * bytesPerPixel) {
        return {};
    }
    return QImage(xcb_get_image_data(reply.get()), area.width(), area.height(),
                  qsizetype{area.width()} * bytesPerPixel, QImage::Format_RGB32)
        .copy();
}

xcb_window_t compositingManager() {
    return selectionOwner(compositingSelection());
}

std::string compositingSelection() {
    return "_NET_WM_CM_S" + std::to_string(screenNumber());
}

std::string traySelection() {
    return "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber());
}

bool isComposited() {
    return connection() == nullptr || compositingManager() != XCB_WINDOW_NONE;
}

bool blursBehind() {
    xcb_connection_t* const x = connection();
    if (x == nullptr || compositingManager() == XCB_WINDOW_NONE) return false;
    // The property's mere presence on the root window is the announcement.
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, rootWindow(), atom(blurRegionName), XCB_ATOM_ANY, 0, 0), nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

void setBlurRegion(xcb_window_t window, const QRegion& region) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    if (region.isEmpty()) {
        xcb_delete_property(x, window, atom(blurRegionName));
        return;
    }
    std::vector<std::uint32_t> values;
    for (const QRect& rectangle : region) {
        for (const int value : {rectangle.x(), rectangle.y(), rectangle.width(), rectangle.height()})
            values.push_back(static_cast<std::uint32_t>(value));
    }
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, atom(blurRegionName), XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

std::string text(xcb_window_t window, const std::string& name) {
    constexpr std::uint32_t maxLength = 65536; // in 32-bit units
    xcb_connection_t* const x = connection();
    if (x == nullptr || window == XCB_WINDOW_NONE) return {};
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(name), XCB_ATOM_ANY, 0, maxLength), nullptr));
    if (!reply || reply->format != 8) return {};
    const auto* const first = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {first, static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::optional<xcb_window_t> activeWindow() {
    const std::optional<xcb_window_t> window = activeWindowHint();
    return window != XCB_WINDOW_NONE ? window : std::nullopt;
}

bool isFullScreen(xcb_window_t window) {
    const std::vector<std::uint32_t> states = numbers(window, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), atom("_NET_WM_STATE_FULLSCREEN")) != states.end();
}

std::optional<QRect> rootGeometry(xcb_window_t window) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return std::nullopt;
    const auto geometryCookie = xcb_get_geometry(x, window);
    const auto placeCookie = xcb_translate_coordinates(x, window, rootWindow(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(x, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(x, placeCookie, nullptr));
    if (!geometry || !place) return std::nullopt;
    return QRect(place->dst_x, place->dst_y, geometry->width, geometry->height);
}

std::optional<QRect> freeArea(const QRect& monitor) {
    xcb_ewmh_connection_t* const x = ewmh();
    if (x == nullptr) return std::nullopt;
    const std::string index =
        std::to_string(cardinal(xcb_ewmh_get_current_desktop(x, screenNumber())).value_or(0));
    const std::vector<std::uint32_t> areas = numbers(rootWindow(), "_GTK_WORKAREAS_D" + index);
    for (std::size_t i = 0; i + 3 < areas.size(); i += 4) {
        const QRect area(static_cast<int>(areas[i]), static_cast<int>(areas[i + 1]),
                         static_cast<int>(areas[i + 2]), static_cast<int>(areas[i + 3]));
        if (!area.isEmpty() && monitor.contains(area)) return area;
    }

    const std::optional<QRect> root = rootGeometry(rootWindow());
    xcb_ewmh_get_windows_reply_t windows;
    if (!root || xcb_ewmh_get_client_list_reply(x, xcb_ewmh_get_client_list(x, screenNumber()), &windows,
                                                nullptr) == 0)
        return std::nullopt;
    QRect area = monitor;
    for (std::uint32_t i = 0; i < windows.windows_len; ++i)
        area = withoutStruts(area, windows.windows[i], *root);
    xcb_ewmh_get_windows_reply_wipe(&windows);
    return area;
}

std::optional<QRect> workArea() {
    xcb_ewmh_connection_t* const x = ewmh();
    if (x == nullptr) return std::nullopt;
    const std::vector<std::uint32_t> areas = numbers(rootWindow(), "_NET_WORKAREA");
    const std::size_t first =
        std::size_t{4} * cardinal(xcb_ewmh_get_current_desktop(x, screenNumber())).value_or(0);
    if (areas.size() < first + 4) return std::nullopt;
    return QRect(static_cast<int>(areas[first]), static_cast<int>(areas[first + 1]),
                 static_cast<int>(areas[first + 2]), static_cast<int>(areas[first + 3]));
}

std::vector<QRect> bars() {
    std::vector<QRect> result;
    const xcb_atom_t dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
    for (const xcb_window_t window : numbers(rootWindow(), "_NET_CLIENT_LIST")) {
        const std::vector<std::uint32_t> types = numbers(window, "_NET_WM_WINDOW_TYPE");
        if (types.empty() || types.front() != dock) continue;
        if (const std::optional<QRect> place = rootGeometry(window)) result.push_back(*place);
    }
    return result;
}

std::string windowManager() {
    return text(windowManagersWindow(), "_NET_WM_NAME");
}

bool hasActiveWindowHint() {
    if (activeWindowHint().has_value()) return true;
    // Openbox removes the property while no window is active.
    if (windowManagersWindow() == XCB_WINDOW_NONE) return false;
    const std::vector<std::uint32_t> supported = numbers(rootWindow(), "_NET_SUPPORTED");
    return std::find(supported.begin(), supported.end(), atom("_NET_ACTIVE_WINDOW")) != supported.end();
}

void moveToCurrentWorkspace(xcb_window_t window) {
    constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
    xcb_ewmh_connection_t* const x = ewmh();
    if (x == nullptr) return;
    const std::optional<std::uint32_t> current = cardinal(xcb_ewmh_get_current_desktop(x, screenNumber()));
    const std::optional<std::uint32_t> own = cardinal(xcb_ewmh_get_wm_desktop(x, window));
    if (!current || !own || *own == everyWorkspace || own == current) return;
    xcb_ewmh_request_change_wm_desktop(x, screenNumber(), window, *current,
                                       XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
}

void requestActivation(xcb_window_t window) {
    xcb_ewmh_connection_t* const x = ewmh();
    if (x == nullptr) return;
    xcb_ewmh_request_change_active_window(x, screenNumber(), window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          XCB_CURRENT_TIME, XCB_WINDOW_NONE);
}

void finishStartup(xcb_window_t window, const std::string& startupId) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, atom("_NET_STARTUP_ID"), atom("UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(startupId.size()), startupId.data());
    std::string message = "remove: ID=\"";
    for (const char character : startupId) {
        if (character == '"' || character == '\\') message += '\\';
        message += character;
    }
    message += '"';
    // Sent in chunks of the size of an event, the last of which contains a zero byte.
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = atom("_NET_STARTUP_INFO_BEGIN");
    constexpr std::size_t pieceSize = sizeof event.data.data8;
    for (std::size_t start = 0; start <= message.size(); start += pieceSize) {
        std::fill(std::begin(event.data.data8), std::end(event.data.data8), std::uint8_t{0});
        message.copy(reinterpret_cast<char*>(event.data.data8), pieceSize, start);
        xcb_send_event(x, 0, rootWindow(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = atom("_NET_STARTUP_INFO");
    }
}

void placeBelow(xcb_window_t window, xcb_window_t sibling) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    const std::array<std::uint32_t, 2> values{sibling, XCB_STACK_MODE_BELOW};
    xcb_configure_window(x, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
}

xcb_window_t topLevel(xcb_window_t window) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return XCB_WINDOW_NONE;
    while (window != XCB_WINDOW_NONE) {
        const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
        if (!tree || tree->parent == XCB_WINDOW_NONE) return XCB_WINDOW_NONE;
        if (tree->parent == tree->root) return window;
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

void placeBelowAll(xcb_window_t window, const std::vector<xcb_window_t>& others) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    std::vector<xcb_window_t> frames;
    frames.reserve(others.size());
    for (const xcb_window_t other : others)
        frames.push_back(topLevel(other));
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(x, xcb_query_tree(x, rootWindow()), nullptr));
    if (!tree) return;
    const xcb_window_t* const first = xcb_query_tree_children(tree.get());
    const xcb_window_t* const end = first + xcb_query_tree_children_length(tree.get());
    // The tree lists the lowest window first.
    const xcb_window_t* const lowest = std::find_first_of(first, end, frames.begin(), frames.end());
    if (lowest == end) return;
    const std::array<std::uint32_t, 2> values{*lowest, XCB_STACK_MODE_BELOW};
    // The frame may be destroyed meanwhile, which is not worth reporting.
    const Reply<xcb_generic_error_t> ignored(xcb_request_check(
        x, xcb_configure_window_checked(x, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                                        values.data())));
}

void reportDamage(xcb_window_t window, QSize size) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    const std::uint32_t withoutExposures = 0;
    const xcb_gcontext_t context = xcb_generate_id(x);
    xcb_create_gc(x, context, window, XCB_GC_GRAPHICS_EXPOSURES, &withoutExposures);
    // Copied onto itself, the window looks the same but counts as damaged.
    xcb_copy_area(x, window, window, context, 0, 0, 0, 0, static_cast<std::uint16_t>(size.width()),
                  static_cast<std::uint16_t>(size.height()));
    xcb_free_gc(x, context);
}

void setInputShape(xcb_window_t window, const std::vector<QRect>& rectangles) {
    setShape(window, XCB_SHAPE_SK_INPUT, rectangles);
}

void leaveOutOfTaskBars(xcb_window_t window) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    // Qt keeps the existing states and adds its own.
    const std::array<xcb_atom_t, 2> states{atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                           atom("_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
}

void setBoundingShape(xcb_window_t window, const QRegion& region) {
    if (region.isEmpty()) {
        if (xcb_connection_t* const x = connection()) {
            xcb_shape_mask(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0, XCB_PIXMAP_NONE);
        }
        return;
    }
    setShape(window, XCB_SHAPE_SK_BOUNDING, {region.begin(), region.end()});
}

} // namespace corvane::x11
