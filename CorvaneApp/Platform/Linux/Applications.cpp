#include "Platform/Linux/Applications.h"

#include <QString>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

// The class part of WM_CLASS by bundle identifier. An identifier that is not here is tried as a class itself:
// many programs name their windows so.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> windowClasses{{
    {"com.mitchellh.ghostty", "com.mitchellh.ghostty"},
    {"dev.warp.Warp-Stable", "dev.warp.Warp"},
    {"com.microsoft.VSCode", "Code"},
    {"com.microsoft.VSCode", "code-oss"},
    {"com.github.wez.wezterm", "org.wezfurlong.wezterm"},
}};

std::vector<QString> classes(const std::string& bundleID) {
    std::vector<QString> result{QString::fromStdString(bundleID)};
    for (const auto& [identifier, windowClass] : windowClasses) {
        if (identifier == bundleID) {
            result.push_back(
                QString::fromUtf8(windowClass.data(), static_cast<qsizetype>(windowClass.size())));
        }
    }
    return result;
}

/// A connection of its own: works whatever window system Qt itself talks to.
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

    /// The topmost window of one of these classes, letter case apart.
    [[nodiscard]] std::optional<xcb_window_t> topmost(const std::vector<QString>& classes) {
        if (!isOpen_) return std::nullopt;
        xcb_ewmh_get_windows_reply_t stacking;
        if (xcb_ewmh_get_client_list_stacking_reply(
                &ewmh_, xcb_ewmh_get_client_list_stacking(&ewmh_, screen_), &stacking, nullptr) == 0) {
            return std::nullopt;
        }
        std::optional<xcb_window_t> found;
        for (std::uint32_t i = stacking.windows_len; i > 0 && !found; --i) {
            const xcb_window_t window = stacking.windows[i - 1];
            const QString name = windowClass(window);
            for (const QString& wanted : classes) {
                if (name.compare(wanted, Qt::CaseInsensitive) == 0) found = window;
            }
        }
        xcb_ewmh_get_windows_reply_wipe(&stacking);
        return found;
    }

    /// Raises and focuses a window, switching to its workspace first: window managers differ in what they
    /// make of a request for a window that is elsewhere.
    void activate(xcb_window_t window) {
        constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
        const std::optional<std::uint32_t> desktop = cardinal(xcb_ewmh_get_wm_desktop(&ewmh_, window));
        const std::optional<std::uint32_t> current = cardinal(xcb_ewmh_get_current_desktop(&ewmh_, screen_));
        if (desktop && *desktop != everyDesktop && desktop != current) {
            xcb_ewmh_request_change_current_desktop(&ewmh_, screen_, *desktop, XCB_CURRENT_TIME);
        }
        // As a pager: from an ordinary application some window managers refuse it.
        xcb_ewmh_request_change_active_window(&ewmh_, screen_, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                              XCB_CURRENT_TIME, XCB_WINDOW_NONE);
        // The answer shows that the requests have arrived.
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

  private:
    [[nodiscard]] QString windowClass(xcb_window_t window) {
        xcb_icccm_get_wm_class_reply_t reply;
        if (xcb_icccm_get_wm_class_reply(connection_, xcb_icccm_get_wm_class(connection_, window), &reply,
                                         nullptr) == 0) {
            return {};
        }
        const QString name = QString::fromLocal8Bit(reply.class_name);
        xcb_icccm_get_wm_class_reply_wipe(&reply);
        return name;
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

void LinuxApplications::activate(const std::string& bundleID) {
    WindowList windows;
    if (const std::optional<xcb_window_t> window = windows.topmost(classes(bundleID)))
        windows.activate(*window);
}

} // namespace corvane
