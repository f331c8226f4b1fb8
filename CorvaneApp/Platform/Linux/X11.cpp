#include "Platform/Linux/X11.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>
#include <xcb/shape.h>

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

bool isComposited() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return true;
    const xcb_atom_t selection = atom("_NET_WM_CM_S0");
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
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

bool hasActiveWindowHint() {
    xcb_connection_t* const x = connection();
    if (x == nullptr) return false;
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, rootWindow(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1), nullptr));
    return reply && reply->type == XCB_ATOM_WINDOW;
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
