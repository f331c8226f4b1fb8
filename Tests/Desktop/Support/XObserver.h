#pragma once

#include "Desktop/Support/Picture.h"
#include "Desktop/Support/Wait.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace corvane::test {

enum class BannerKind : std::uint8_t { waiting, done };

/// One banner window as the X server reports it.
struct Banner {
    std::uint32_t window = 0;
    BannerKind kind = BannerKind::waiting;
    Rect frame;             ///< the whole window
    Rect card;              ///< the card in it, without the margins for its shadow
    bool hasShadow = false; ///< whether the window has margins for a shadow around the card

    bool operator==(const Banner&) const = default;
};

/// Inspects an X display from outside, over its own connection: the windows and what the screen shows.
/// Queries only the X server, never the application.
///
/// Every function throws std::runtime_error if the server cannot be reached. Not thread-safe.
class XObserver {
  public:
    /// `display` as in DISPLAY, which is the default.
    explicit XObserver(const std::string& display = {});
    XObserver(const XObserver&) = delete;
    XObserver& operator=(const XObserver&) = delete;
    ~XObserver();

    [[nodiscard]] Rect screenArea() const;

    /// The work area that the window manager reports; else the whole screen.
    [[nodiscard]] Rect workArea() const;

    /// The mapped override-redirect windows of the application that have a banner's size, the highest on the
    /// screen first.
    [[nodiscard]] std::vector<Banner> banners() const;

    /// The geometry of the application's open menus: its other override-redirect windows.
    [[nodiscard]] std::vector<Rect> menus() const;

    /// Whether `upper`, or the frame around it, is above `lower` in the stacking order.
    [[nodiscard]] bool isAbove(std::uint32_t upper, std::uint32_t lower) const;

    /// The opacity that is set for compositing managers, 0 to 1.
    [[nodiscard]] double opacity(std::uint32_t window) const;

    /// All mapped windows of the application, banners or not.
    [[nodiscard]] std::size_t windowCount() const;

    /// What the screen shows, including compositing.
    [[nodiscard]] Picture screen() const;
    /// The part of it within `area`, which must be on the screen. Fast enough to follow a fade.
    [[nodiscard]] Picture screen(Rect area) const;

    /// The name of the running window manager; empty when there is none.
    [[nodiscard]] std::string windowManager() const;

    /// Whether the window manager, which must have a name, responds to requests within `timeout`. It claims
    /// the display early in its start and may take another second or more to reach its main loop.
    ///
    /// Asks again and again until it responds. Openbox moves the events that arrive during its start into a
    /// queue of its own, and then sleeps until the X server sends one more: without a further event, windows
    /// that were mapped meanwhile stay unmanaged. A desktop in use never lacks events.
    [[nodiscard]] bool windowManagerResponds(std::chrono::milliseconds timeout);

    /// Whether any window manager runs, even one that does not report its name.
    [[nodiscard]] bool isManaged() const;

    /// Whether a compositing manager blends the windows.
    [[nodiscard]] bool isComposited() const;

    /// The settings manager's property, unparsed; empty without one.
    [[nodiscard]] std::string settings() const;

    /// The window with the input focus, and the one that the window manager reports as active.
    [[nodiscard]] std::uint32_t focusedWindow() const;
    [[nodiscard]] std::uint32_t activeWindow() const;

    /// Whether the input focus is on this window or within it. Some window managers report a window as active
    /// a little before that, when keys still go elsewhere.
    [[nodiscard]] bool hasFocus(std::uint32_t window) const;

    /// The managed windows whose class is `name`, ignoring case.
    [[nodiscard]] std::vector<std::uint32_t> managedWindows(std::string_view name) const;
    [[nodiscard]] Rect geometry(std::uint32_t window) const;

    /// Whether a program holds the keyboard, as screen lockers and open menus do.
    [[nodiscard]] bool isKeyboardGrabbed() const;

    /// Whether a window wants the focus, by its input hint or a _NET_WM_USER_TIME other than 0.
    [[nodiscard]] bool asksForFocus(std::uint32_t window) const;

    /// Whether a managed window asks to be left out of task bars and pagers.
    [[nodiscard]] bool isLeftOutOfTaskBars(std::uint32_t window) const;

    [[nodiscard]] bool isMinimized(std::uint32_t window) const;

    /// The sizes of the icons that a window provides for window lists, in pixels.
    [[nodiscard]] std::vector<std::uint32_t> iconSides(std::uint32_t window) const;
    [[nodiscard]] std::string title(std::uint32_t window) const;
    /// The class by which desktops find a window's desktop entry.
    [[nodiscard]] std::string windowClass(std::uint32_t window) const;

    [[nodiscard]] std::uint32_t currentWorkspace() const;
    /// The workspace of a managed window.
    [[nodiscard]] std::uint32_t workspace(std::uint32_t window) const;

    /// Send requests to the window manager, as a pager or the window itself does.
    void requestFullScreen(std::uint32_t window);
    void requestMinimized(std::uint32_t window);
    void requestWorkspace(std::uint32_t index);
    void requestWorkspaceCount(std::uint32_t count);

    /// Marks the window as used at this moment, as toolkits do at each key press: window managers give no
    /// other program's window the focus for an older reason.
    void noteUse(std::uint32_t window);

    /// Shows an override-redirect window in front of all others, with this opacity where windows are blended.
    /// It is removed with this observer.
    void cover(Rect area, double opacity = 1);

    /// Announces, as a compositor does, that it blurs behind windows that request it; or withdraws that.
    void announceBlur(bool isOffered);
    /// The rectangles of a window behind which it requests the blur, in the window's coordinates.
    [[nodiscard]] std::vector<Rect> blurRegion(std::uint32_t window) const;

    /// Fills the desktop's background with two tones, and announces it to compositing managers.
    void paintWallpaper();

  private:
    [[nodiscard]] std::uint32_t atom(std::string_view name) const;
    [[nodiscard]] std::string property(std::uint32_t window, std::string_view name) const;
    [[nodiscard]] std::vector<std::uint32_t> cardinals(std::uint32_t window, std::string_view name) const;
    [[nodiscard]] bool isOurs(std::uint32_t window) const;
    enum class Kinds { banners, menus, all };
    [[nodiscard]] std::vector<Banner> mapped(Kinds kinds) const;
    /// The child of the root window that contains `window`.
    [[nodiscard]] std::uint32_t frame(std::uint32_t window) const;
    void request(std::uint32_t window, std::string_view message, std::array<std::uint32_t, 5> data);
    [[nodiscard]] std::uint32_t serverTime(); // in milliseconds
    void roundTrip() const;                   // returns when the server has processed all requests

    xcb_connection_t* connection_;
    std::uint32_t root_ = 0;
    std::uint32_t visual_ = 0;
    std::uint8_t depth_ = 0;
    Rect screen_;
};

} // namespace corvane::test
