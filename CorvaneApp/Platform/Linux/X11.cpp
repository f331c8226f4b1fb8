#include "Platform/Linux/X11.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>
#include <xcb/shape.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

namespace corvane::x11 {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

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

// A window's property of 32-bit numbers; empty when it has none.
std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& name) {
    constexpr std::uint32_t maxLength = 4096;
    xcb_connection_t* const x = connection();
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(name), XCB_ATOM_ANY, 0, maxLength), nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

// What is left of `area` when the strips along the root window's edges that a panel keeps are taken away.
QRect withoutStruts(QRect area, const std::vector<std::uint32_t>& struts, const QRect& root) {
    // Left, right, top and bottom, then from where to where each of them reaches.
    if (struts.size() != 12) return area;
    const auto at = [&struts](std::size_t i) { return static_cast<int>(struts[i]); };
    const auto strip = [](int left, int top, int right, int bottom) {
        return QRect(QPoint(left, top), QPoint(right, bottom));
    };
    const QRect left = strip(0, at(4), at(0) - 1, at(5)) & area;
    const QRect right = strip(root.right() + 1 - at(1), at(6), root.right(), at(7)) & area;
    const QRect top = strip(at(8), 0, at(9), at(2) - 1) & area;
    const QRect bottom = strip(at(10), root.bottom() + 1 - at(3), at(11), root.bottom()) & area;
    // A panel of another monitor, between this one and the edge, takes nothing from this one.
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

xcb_window_t rootWindow() {
    xcb_connection_t* const x = connection();
    return x != nullptr ? xcb_setup_roots_iterator(xcb_get_setup(x)).data->root
                        : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t atom(const std::string& name) {
    // A name keeps its number for as long as the server runs, and so do we.
    static std::map<std::string, xcb_atom_t> atoms;
    xcb_connection_t* const x = connection();
    if (x == nullptr) return XCB_ATOM_NONE;
    const auto known = atoms.find(name);
    if (known != atoms.end()) return known->second;
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    return reply ? atoms.emplace(name, reply->atom).first->second : xcb_atom_t{XCB_ATOM_NONE};
}

void flush() {
    if (xcb_connection_t* const x = connection()) xcb_flush(x);
}

xcb_window_t compositingManager() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return XCB_WINDOW_NONE;
    const xcb_atom_t selection = atom("_NET_WM_CM_S0");
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

bool isComposited() {
    return connection() == nullptr || compositingManager() != XCB_WINDOW_NONE;
}

std::string text(xcb_window_t window, const std::string& name) {
    constexpr std::uint32_t maxLength = 64; // in 32-bit units
    xcb_connection_t* const x = connection();
    if (x == nullptr) return {};
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(name), XCB_ATOM_ANY, 0, maxLength), nullptr));
    if (!reply || reply->format != 8) return {};
    const auto* const first = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {first, static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::optional<xcb_window_t> activeWindow() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return std::nullopt;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, rootWindow(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) return std::nullopt;
    const auto window = *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    return window != XCB_WINDOW_NONE ? std::optional(window) : std::nullopt;
}

std::optional<QRect> rootGeometry(xcb_window_t window) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return std::nullopt;
    const auto geometryCookie = xcb_get_geometry(x, window);
    const auto placeCookie = xcb_translate_coordinates(x, window, rootWindow(), 0, 0);
    const ReplyPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(x, geometryCookie, nullptr));
    const ReplyPointer<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(x, placeCookie, nullptr));
    if (!geometry || !place) return std::nullopt;
    return QRect(place->dst_x, place->dst_y, geometry->width, geometry->height);
}

std::optional<QRect> freeArea(const QRect& monitor) {
    if (connection() == nullptr) return std::nullopt;
    const std::vector<std::uint32_t> workspace = numbers(rootWindow(), "_NET_CURRENT_DESKTOP");
    const std::string index = std::to_string(workspace.empty() ? 0 : workspace.front());
    const std::vector<std::uint32_t> areas = numbers(rootWindow(), "_GTK_WORKAREAS_D" + index);
    for (std::size_t i = 0; i + 3 < areas.size(); i += 4) {
        const QRect area(static_cast<int>(areas[i]), static_cast<int>(areas[i + 1]),
                         static_cast<int>(areas[i + 2]), static_cast<int>(areas[i + 3]));
        if (!area.isEmpty() && monitor.contains(area)) return area;
    }

    const std::optional<QRect> root = rootGeometry(rootWindow());
    const std::vector<std::uint32_t> windows = numbers(rootWindow(), "_NET_CLIENT_LIST");
    if (!root || windows.empty()) return std::nullopt;
    QRect area = monitor;
    for (const std::uint32_t window : windows)
        area = withoutStruts(area, numbers(window, "_NET_WM_STRUT_PARTIAL"), *root);
    return area;
}

bool hasActiveWindowHint() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return false;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, rootWindow(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1), nullptr));
    return reply && reply->type == XCB_ATOM_WINDOW;
}

void moveToCurrentWorkspace(xcb_window_t window) {
    constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
    constexpr std::uint32_t fromApplication = 1;
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    const std::vector<std::uint32_t> current = numbers(rootWindow(), "_NET_CURRENT_DESKTOP");
    const std::vector<std::uint32_t> own = numbers(window, "_NET_WM_DESKTOP");
    if (current.empty() || own.empty() || own.front() == everyWorkspace || own.front() == current.front())
        return;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("_NET_WM_DESKTOP");
    event.data.data32[0] = current.front();
    event.data.data32[1] = fromApplication;
    xcb_send_event(x, 0, rootWindow(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

void placeBelow(xcb_window_t window, xcb_window_t sibling) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    const std::array<std::uint32_t, 2> values{sibling, XCB_STACK_MODE_BELOW};
    xcb_configure_window(x, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
}

void reportDamage(xcb_window_t window, QSize size) {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return;
    const std::uint32_t withoutExposures = 0;
    const xcb_gcontext_t context = xcb_generate_id(x);
    xcb_create_gc(x, context, window, XCB_GC_GRAPHICS_EXPOSURES, &withoutExposures);
    // Copied onto itself, the window looks the same but counts as drawn on.
    xcb_copy_area(x, window, window, context, 0, 0, 0, 0, static_cast<std::uint16_t>(size.width()),
                  static_cast<std::uint16_t>(size.height()));
    xcb_free_gc(x, context);
}

void setInputShape(xcb_window_t window, const std::vector<QRect>& rectangles) {
    setShape(window, XCB_SHAPE_SK_INPUT, rectangles);
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
