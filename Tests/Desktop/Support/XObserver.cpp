#include "Desktop/Support/XObserver.h"

#include "Desktop/Support/XReply.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <utility>

namespace corvane::test {

namespace {

struct Size {
    int width;
    int height;
};
constexpr Size waitingSize{520, 96};
constexpr Size doneSize{360, 64};

// The margins for the shadow around a card.
constexpr int shadowSide = 24;
constexpr int shadowAbove = 16;
constexpr int shadowBelow = 32;

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// The banner of a window, if its cards are `eighths` eighths of their ordinary size.
std::optional<Banner> bannerOf(std::uint32_t window, Rect frame, int eighths) {
    for (const auto& [kind, ordinary] :
         {std::pair(BannerKind::waiting, waitingSize), std::pair(BannerKind::done, doneSize)}) {
        const Size size{ordinary.width * eighths / 8, ordinary.height * eighths / 8};
        if (frame.width == size.width && frame.height == size.height)
            return Banner{window, kind, frame, frame, false};
        if (frame.width == size.width + 2 * shadowSide &&
            frame.height == size.height + shadowAbove + shadowBelow) {
            const Rect card{frame.x + shadowSide, frame.y + shadowAbove, size.width, size.height};
            return Banner{window, kind, frame, card, true};
        }
    }
    return std::nullopt;
}

std::optional<Banner> bannerOf(std::uint32_t window, Rect frame) {
    // Their sizes at all text scales; no two of them are the same.
    for (int eighths = 8; eighths <= 12; ++eighths) {
        if (const std::optional<Banner> banner = bannerOf(window, frame, eighths)) return banner;
    }
    return std::nullopt;
}

} // namespace

XObserver::XObserver(const std::string& display)
    : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server answers" + (display.empty() ? "" : " on " + display));
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    visual_ = screen->root_visual;
    depth_ = screen->root_depth;
    screen_ = {0, 0, screen->width_in_pixels, screen->height_in_pixels};
}

XObserver::~XObserver() {
    xcb_disconnect(connection_);
}

Rect XObserver::screenArea() const {
    return screen_;
}

std::uint32_t XObserver::atom(std::string_view name) const {
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!reply) throw std::runtime_error("the X server has gone");
    return reply->atom;
}

std::string XObserver::property(std::uint32_t window, std::string_view name) const {
    constexpr std::uint32_t maxLength = 1U << 16U; // in 32-bit units
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, maxLength),
        nullptr));
    if (!reply) return {};
    const auto* const bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> XObserver::cardinals(std::uint32_t window, std::string_view name) const {
    const std::string bytes = property(window, name);
    std::vector<std::uint32_t> result(bytes.size() / sizeof(std::uint32_t));
    if (!result.empty()) std::memcpy(result.data(), bytes.data(), result.size() * sizeof(std::uint32_t));
    return result;
}

std::string XObserver::settings() const {
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, atom("_XSETTINGS_S0")), nullptr));
    if (!reply || reply->owner == XCB_WINDOW_NONE) return {};
    return property(reply->owner, "_XSETTINGS_SETTINGS");
}

bool XObserver::isKeyboardGrabbed() const {
    const XReply<xcb_grab_keyboard_reply_t> grab(xcb_grab_keyboard_reply(
        connection_,
        xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    if (grab && grab->status == XCB_GRAB_STATUS_SUCCESS) xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    roundTrip();
    return grab && grab->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool XObserver::asksForFocus(std::uint32_t window) const {
    constexpr std::uint32_t inputHint = 1;
    const std::vector<std::uint32_t> hints = cardinals(window, "WM_HINTS");
    const bool wantsInput = hints.size() < 2 || (hints[0] & inputHint) == 0 || hints[1] != 0;
    const std::vector<std::uint32_t> userTime = cardinals(window, "_NET_WM_USER_TIME");
    return wantsInput || userTime.size() != 1 || userTime.front() != 0;
}

Rect XObserver::workArea() const {
    const std::vector<std::uint32_t> areas = cardinals(root_, "_NET_WORKAREA");
    const std::size_t index = std::size_t{4} * currentWorkspace();
    if (areas.size() < index + 4) return screen_;
    return {static_cast<int>(areas[index]), static_cast<int>(areas[index + 1]),
            static_cast<int>(areas[index + 2]), static_cast<int>(areas[index + 3])};
}

bool XObserver::isOurs(std::uint32_t window) const {
    // Two words, each ended by a zero byte: the program's name and its class.
    return lowerCase(property(window, "WM_CLASS")).find("corvane") != std::string::npos ||
           property(window, "_NET_WM_NAME") == "Corvane";
}

std::vector<Banner> XObserver::mapped(Kinds kinds) const {
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr));
    if (!tree) throw std::runtime_error("the X server has gone");
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());

    std::vector<Banner> result;
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = children[i];
        const auto attributesCookie = xcb_get_window_attributes(connection_, window);
        const auto geometryCookie = xcb_get_geometry(connection_, window);
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection_, attributesCookie, nullptr));
        const XReply<xcb_get_geometry_reply_t> place(
            xcb_get_geometry_reply(connection_, geometryCookie, nullptr));
        // The window may be destroyed between the requests.
        if (!attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !isOurs(window))
            continue;
        const Rect frame{place->x, place->y, place->width, place->height};
        const std::optional<Banner> banner = bannerOf(window, frame);
        const bool isPopup = attributes->override_redirect != 0;
        if (banner && isPopup) {
            if (kinds != Kinds::menus) result.push_back(*banner);
        } else if (kinds == Kinds::all || (kinds == Kinds::menus && isPopup)) {
            result.push_back({window, BannerKind::waiting, frame, frame, false});
        }
    }
    return result;
}

std::vector<Banner> XObserver::banners() const {
    std::vector<Banner> result = mapped(Kinds::banners);
    std::ranges::sort(result, {}, [](const Banner& banner) { return banner.card.y; });
    return result;
}

std::vector<Rect> XObserver::menus() const {
    std::vector<Rect> result;
    for (const Banner& menu : mapped(Kinds::menus))
        result.push_back(menu.frame);
    return result;
}

std::uint32_t XObserver::frame(std::uint32_t window) const {
    for (;;) {
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
        if (!tree || tree->parent == XCB_WINDOW_NONE) return XCB_WINDOW_NONE;
        if (tree->parent == root_) return window;
        window = tree->parent;
    }
}

bool XObserver::isAbove(std::uint32_t upper, std::uint32_t lower) const {
    const std::uint32_t upperFrame = frame(upper);
    const std::uint32_t lowerFrame = frame(lower);
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr));
    if (!tree) throw std::runtime_error("the X server has gone");
    const xcb_window_t* const first = xcb_query_tree_children(tree.get());
    const xcb_window_t* const end = first + xcb_query_tree_children_length(tree.get());
    const xcb_window_t* const found = std::find(first, end, lowerFrame);
    return found != end && std::find(found, end, upperFrame) != end;
}

double XObserver::opacity(std::uint32_t window) const {
    const std::vector<std::uint32_t> opacity = cardinals(window, "_NET_WM_WINDOW_OPACITY");
    return opacity.empty() ? 1 : static_cast<double>(opacity.front()) / 0xFFFFFFFFU;
}

std::size_t XObserver::windowCount() const {
    return mapped(Kinds::all).size();
}

Picture XObserver::screen() const {
    return screen(screen_);
}

Picture XObserver::screen(Rect area) const {
    const XReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), ~std::uint32_t{0}),
        nullptr));
    if (!image) throw std::runtime_error("the X server has gone, or the area is not on the screen");
    Picture picture{area.width, area.height, {}};
    picture.pixels.resize(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
    const std::size_t size = picture.pixels.size() * sizeof(std::uint32_t);
    if (static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < size)
        throw std::runtime_error("the screen's pixels are not 32 bits wide; 24-bit colour is needed");
    std::memcpy(picture.pixels.data(), xcb_get_image_data(image.get()), size);
    return picture;
}

std::string XObserver::windowManager() const {
    const std::vector<std::uint32_t> check = cardinals(root_, "_NET_SUPPORTING_WM_CHECK");
    if (check.empty()) return {};
    // A window manager that died leaves its property on the root, but not its window.
    return property(check.front(), "_NET_WM_NAME");
}

bool XObserver::windowManagerResponds(std::chrono::milliseconds timeout) {
    // Any window may ask how large its frame will be before it is mapped. This one is destroyed with the
    // observer.
    const std::uint32_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    return waitUntil(timeout, [&] {
        request(window, "_NET_REQUEST_FRAME_EXTENTS", {});
        return !property(window, "_NET_FRAME_EXTENTS").empty();
    });
}

bool XObserver::isManaged() const {
    const XReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, root_), nullptr));
    // Only one client at a time may redirect the requests of others.
    return attributes && (attributes->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}

bool XObserver::isComposited() const {
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, atom("_NET_WM_CM_S0")), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

std::uint32_t XObserver::focusedWindow() const {
    const XReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    if (!focus) throw std::runtime_error("the X server has gone");
    return focus->focus;
}

bool XObserver::hasFocus(std::uint32_t window) const {
    for (std::uint32_t focused = focusedWindow(); focused > XCB_INPUT_FOCUS_POINTER_ROOT;) {
        if (focused == window) return true;
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, focused), nullptr));
        focused = tree ? tree->parent : std::uint32_t{XCB_WINDOW_NONE};
    }
    return false;
}

std::uint32_t XObserver::activeWindow() const {
    const std::vector<std::uint32_t> active = cardinals(root_, "_NET_ACTIVE_WINDOW");
    return active.empty() ? std::uint32_t{XCB_WINDOW_NONE} : active.front();
}

std::vector<std::uint32_t> XObserver::managedWindows(std::string_view name) const {
    std::vector<std::uint32_t> result;
    for (const std::uint32_t window : cardinals(root_, "_NET_CLIENT_LIST")) {
        if (lowerCase(property(window, "WM_CLASS")).find(lowerCase(name)) != std::string::npos)
            result.push_back(window);
    }
    return result;
}

Rect XObserver::geometry(std::uint32_t window) const {
    const auto geometryCookie = xcb_get_geometry(connection_, window);
    const auto placeCookie = xcb_translate_coordinates(connection_, window, root_, 0, 0);
    const XReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection_, geometryCookie, nullptr));
    const XReply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection_, placeCookie, nullptr));
    if (!size || !place) return {};
    return {place->dst_x, place->dst_y, size->width, size->height};
}

bool XObserver::isLeftOutOfTaskBars(std::uint32_t window) const {
    const std::vector<std::uint32_t> states = cardinals(window, "_NET_WM_STATE");
    const auto has = [&](std::string_view name) {
        return std::find(states.begin(), states.end(), atom(name)) != states.end();
    };
    return has("_NET_WM_STATE_SKIP_TASKBAR") && has("_NET_WM_STATE_SKIP_PAGER");
}

bool XObserver::isMinimized(std::uint32_t window) const {
    constexpr std::uint32_t iconic = 3;
    const std::vector<std::uint32_t> state = cardinals(window, "WM_STATE");
    return !state.empty() && state.front() == iconic;
}

std::vector<std::uint32_t> XObserver::iconSides(std::uint32_t window) const {
    std::vector<std::uint32_t> sides;
    const std::vector<std::uint32_t> icons = cardinals(window, "_NET_WM_ICON");
    // Each has its width, its height, and then its pixels.
    for (std::size_t i = 0; i + 1 < icons.size();) {
        const std::size_t next = i + 2 + std::size_t{icons[i]} * icons[i + 1];
        if (icons[i] != icons[i + 1] || next > icons.size()) return {};
        sides.push_back(icons[i]);
        i = next;
    }
    return sides;
}

std::string XObserver::title(std::uint32_t window) const {
    return property(window, "_NET_WM_NAME");
}

std::string XObserver::windowClass(std::uint32_t window) const {
    // The program's name and the class, each ended by a zero byte.
    const std::string names = property(window, "WM_CLASS");
    const std::size_t end = names.find('\0');
    return end == std::string::npos ? "" : names.substr(end + 1, names.size() - end - 2);
}

std::uint32_t XObserver::workspace(std::uint32_t window) const {
    const std::vector<std::uint32_t> index = cardinals(window, "_NET_WM_DESKTOP");
    return index.empty() ? 0 : index.front();
}

std::uint32_t XObserver::currentWorkspace() const {
    const std::vector<std::uint32_t> current = cardinals(root_, "_NET_CURRENT_DESKTOP");
    return current.empty() ? 0 : current.front();
}

void XObserver::roundTrip() const {
    static_cast<void>(focusedWindow());
}

void XObserver::request(std::uint32_t window, std::string_view message, std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::ranges::copy(data, static_cast<std::uint32_t*>(event.data.data32));
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &event, sizeof event);
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes.data());
    roundTrip();
}

void XObserver::requestFullScreen(std::uint32_t window) {
    constexpr std::uint32_t add = 1;
    constexpr std::uint32_t fromPager = 2;
    request(window, "_NET_WM_STATE", {add, atom("_NET_WM_STATE_FULLSCREEN"), 0, fromPager, 0});
}

void XObserver::requestMinimized(std::uint32_t window) {
    constexpr std::uint32_t iconic = 3;
    request(window, "WM_CHANGE_STATE", {iconic});
}

void XObserver::requestWorkspace(std::uint32_t index) {
    request(root_, "_NET_CURRENT_DESKTOP", {index});
}

void XObserver::requestWorkspaceCount(std::uint32_t count) {
    request(root_, "_NET_NUMBER_OF_DESKTOPS", {count});
}

std::uint32_t XObserver::serverTime() {
    // The server reports it with each property change.
    const std::uint32_t window = xcb_generate_id(connection_);
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(connection_);
    for (;;) {
        const XReply<xcb_generic_event_t> event(xcb_wait_for_event(connection_));
        if (!event) throw std::runtime_error("the X server has gone");
        constexpr std::uint8_t typeMask = 0x7F;
        if ((event->response_type & typeMask) != XCB_PROPERTY_NOTIFY) continue;
        xcb_destroy_window(connection_, window);
        return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
    }
}

void XObserver::noteUse(std::uint32_t window) {
    const std::uint32_t time = serverTime();
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL, 32, 1, &time);
    roundTrip();
}

void XObserver::cover(Rect area, double opacity) {
    const std::uint32_t window = xcb_generate_id(connection_);
    constexpr std::array<std::uint32_t, 2> values{0x223344, 1}; // background pixel, override-redirect
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    const auto shown = static_cast<std::uint32_t>(opacity * 0xFFFFFFFFU);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_WINDOW_OPACITY"),
                        XCB_ATOM_CARDINAL, 32, 1, &shown);
    xcb_map_window(connection_, window);
    roundTrip();
}

void XObserver::announceBlur(bool isOffered) {
    const std::uint32_t name = atom("_KDE_NET_WM_BLUR_BEHIND_REGION");
    const std::uint8_t nothing = 0;
    if (isOffered) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, name, name, 8, 1, &nothing);
    } else {
        xcb_delete_property(connection_, root_, name);
    }
    roundTrip();
}

std::vector<Rect> XObserver::blurRegion(std::uint32_t window) const {
    const std::vector<std::uint32_t> values = cardinals(window, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    std::vector<Rect> result;
    for (std::size_t i = 0; i + 3 < values.size(); i += 4) {
        result.push_back({static_cast<int>(values[i]), static_cast<int>(values[i + 1]),
                          static_cast<int>(values[i + 2]), static_cast<int>(values[i + 3])});
    }
    return result;
}

void XObserver::paintWallpaper() {
    constexpr Color light{0x6F8FAF};
    constexpr Color dark{0x557799};
    const xcb_pixmap_t pixmap = xcb_generate_id(connection_);
    xcb_create_pixmap(connection_, depth_, pixmap, root_, static_cast<std::uint16_t>(screen_.width),
                      static_cast<std::uint16_t>(screen_.height));
    const xcb_gcontext_t context = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context, pixmap, 0, nullptr);
    std::vector<std::uint32_t> row(static_cast<std::size_t>(screen_.width));
    for (int y = 0; y < screen_.height; ++y) {
        for (int x = 0; x < screen_.width; ++x) {
            const bool isAbove = x * screen_.height < (screen_.height - y) * screen_.width;
            row[static_cast<std::size_t>(x)] = isAbove ? light.rgb : dark.rgb;
        }
        xcb_put_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context,
                      static_cast<std::uint16_t>(screen_.width), 1, 0, static_cast<std::int16_t>(y), 0,
                      depth_, static_cast<std::uint32_t>(row.size() * sizeof row[0]),
                      reinterpret_cast<const std::uint8_t*>(row.data()));
    }
    xcb_free_gc(connection_, context);
    xcb_change_window_attributes(connection_, root_, XCB_CW_BACK_PIXMAP, &pixmap);
    // Compositing managers take the background from these; it must outlive this connection.
    for (const char* const name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, atom(name), XCB_ATOM_PIXMAP, 32, 1,
                            &pixmap);
    }
    xcb_set_close_down_mode(connection_, XCB_CLOSE_DOWN_RETAIN_PERMANENT);
    xcb_clear_area(connection_, 0, root_, 0, 0, 0, 0);
    roundTrip();
}

} // namespace corvane::test
