#include "Platform/Linux/XWindows.h"

#include "Platform/Linux/XReply.h"

#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <cstdint>
#include <optional>
#include <ranges>
#include <vector>

namespace corvane {

namespace {

class WindowList {
  public:
    WindowList() {
        connection_ = xcb_connect(nullptr, &screen_);
        isOpen_ = xcb_connection_has_error(connection_) == 0 &&
                  xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) != 0;
    }
    WindowList(const WindowList&) = delete;
    WindowList& operator=(const WindowList&) = delete;
    ~WindowList() {
        if (isOpen_) xcb_ewmh_connection_wipe(&ewmh_);
        xcb_disconnect(connection_);
    }

    /// The managed windows, the topmost first: the stacking order is the order of use.
    [[nodiscard]] std::vector<OpenWindow> windows() {
        std::vector<OpenWindow> result;
        if (!isOpen_) return result;
        for (const xcb_window_t window : managed() | std::views::reverse) {
            const std::uint32_t process = cardinal(xcb_ewmh_get_wm_pid(&ewmh_, window)).value_or(0);
            result.push_back({static_cast<pid_t>(process), window, windowClass(window), title(window)});
        }
        return result;
    }

    /// Raises and focuses a window, switching to its workspace first: window managers differ in how they
    /// handle a request for a window on another workspace.
    void activate(xcb_window_t window) {
        constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
        const std::optional<std::uint32_t> desktop = cardinal(xcb_ewmh_get_wm_desktop(&ewmh_, window));
        const std::optional<std::uint32_t> current = cardinal(xcb_ewmh_get_current_desktop(&ewmh_, screen_));
        if (desktop && *desktop != everyDesktop && desktop != current) {
            xcb_ewmh_request_change_current_desktop(&ewmh_, screen_, *desktop, XCB_CURRENT_TIME);
        }
        // As a pager: some window managers refuse the request from an ordinary application.
        xcb_ewmh_request_change_active_window(&ewmh_, screen_, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                              XCB_CURRENT_TIME, XCB_WINDOW_NONE);
        // A round trip: the reply shows that the requests have arrived.
        const x11::Reply<xcb_get_input_focus_reply_t> answer(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

  private:
    /// The topmost last.
    [[nodiscard]] std::vector<xcb_window_t> managed() {
        // Both lists: some window managers report the stacking order only once it has changed.
        std::vector<xcb_window_t> result;
        for (const auto cookie : {xcb_ewmh_get_client_list(&ewmh_, screen_),
                                  xcb_ewmh_get_client_list_stacking(&ewmh_, screen_)}) {
            xcb_ewmh_get_windows_reply_t reply;
            // Both replies have the same layout.
            if (xcb_ewmh_get_windows_reply(&ewmh_, cookie, &reply, nullptr) == 0) continue;
            result.insert(result.end(), reply.windows, reply.windows + reply.windows_len);
            xcb_ewmh_get_windows_reply_wipe(&reply);
        }
        return result;
    }

    [[nodiscard]] QString windowClass(xcb_window_t window) {
        xcb_icccm_get_wm_class_reply_t reply;
        if (xcb_icccm_get_wm_class_reply(connection_, xcb_icccm_get_wm_class(connection_, window), &reply,
                                         nullptr) == 0) {
            return {};
        }
        QString name = QString::fromLocal8Bit(reply.class_name);
        xcb_icccm_get_wm_class_reply_wipe(&reply);
        return name;
    }

    [[nodiscard]] QString title(xcb_window_t window) {
        xcb_ewmh_get_utf8_strings_reply_t name;
        if (xcb_ewmh_get_wm_name_reply(&ewmh_, xcb_ewmh_get_wm_name(&ewmh_, window), &name, nullptr) != 0) {
            QString result = QString::fromUtf8(name.strings, static_cast<qsizetype>(name.strings_len));
            xcb_ewmh_get_utf8_strings_reply_wipe(&name);
            return result;
        }
        xcb_icccm_get_text_property_reply_t old;
        if (xcb_icccm_get_wm_name_reply(connection_, xcb_icccm_get_wm_name(connection_, window), &old,
                                        nullptr) == 0) {
            return {};
        }
        QString result = QString::fromLocal8Bit(old.name, static_cast<qsizetype>(old.name_len));
        xcb_icccm_get_text_property_reply_wipe(&old);
        return result;
    }

    [[nodiscard]] std::optional<std::uint32_t> cardinal(xcb_get_property_cookie_t cookie) {
        std::uint32_t value = 0;
        if (xcb_ewmh_get_cardinal_reply(&ewmh_, cookie, &value, nullptr) == 0) return std::nullopt;
        return value;
    }

    xcb_connection_t* connection_ = nullptr;
    int screen_ = 0;
    xcb_ewmh_connection_t ewmh_{};
    bool isOpen_ = false;
};

} // namespace

void XWindowRaiser::raise(const WindowSearch& search, QObject& /*context*/, Report report) {
    WindowList list;
    const std::vector<OpenWindow> windows = list.windows();
    const std::optional<std::size_t> chosen = chooseWindow(windows, search);
    if (chosen) list.activate(windows[*chosen].id.value_or(XCB_WINDOW_NONE));
    report(chosen.has_value());
}

} // namespace corvane
