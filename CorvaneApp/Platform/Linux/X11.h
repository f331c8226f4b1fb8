#pragma once

#include <QImage>
#include <QRect>
#include <QRegion>
#include <QSize>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The X server that Qt is connected to. On other window systems every function does nothing, or returns
/// nothing. Main thread only.
namespace corvane::x11 {

/// Qt's own connection; null where Qt uses another window system.
[[nodiscard]] xcb_connection_t* connection();

/// The number of the X screen that Qt is connected to, as in DISPLAY; 0 where there is no X server.
[[nodiscard]] int screenNumber();

/// That screen as it was when Qt connected; null where there is no X server.
[[nodiscard]] const xcb_screen_t* screen();

/// The root window of that screen.
[[nodiscard]] xcb_window_t rootWindow();

/// The atom of a name; 0 where there is no X server.
[[nodiscard]] xcb_atom_t atom(const std::string& name);

/// Flushes the connection's buffer. Qt leaves opacity, shape and stacking requests there until something else
/// happens to flush it.
void flush();

/// The owner of a selection; XCB_WINDOW_NONE without one.
[[nodiscard]] xcb_window_t selectionOwner(const std::string& selection);

/// A window's property of 32-bit numbers; empty without one.
[[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& name);

/// Makes `XEvents` report changes of the properties of another program's window.
void watchProperties(xcb_window_t window);

/// What the screen shows in `area`, in device pixels of the root window; a null image on failure, such as on
/// a screen of fewer than 24 bits.
[[nodiscard]] QImage screenPixels(const QRect& area);

/// The selections by which the compositing manager and the embedding tray of Qt's screen are found.
[[nodiscard]] std::string compositingSelection();
[[nodiscard]] std::string traySelection();

/// The property by which a compositing manager announces on the root window that it blurs, and by which
/// windows request blur.
constexpr const char* blurRegionName = "_KDE_NET_WM_BLUR_BEHIND_REGION";

/// The window that owns the compositing manager selection of Qt's screen; XCB_NONE if none runs.
[[nodiscard]] xcb_window_t compositingManager();

/// Whether a compositing manager runs, so that windows are blended with what is below. True on other window
/// systems.
[[nodiscard]] bool isComposited();

/// Whether the compositing manager blurs what lies behind the regions that windows request. May change while
/// it runs. False on other window systems.
[[nodiscard]] bool blursBehind();

/// Requests blur behind `region` of the window, in its device pixels; an empty region removes it.
void setBlurRegion(xcb_window_t window, const QRegion& region);

/// A window's property as text or bytes; empty when it has none.
[[nodiscard]] std::string text(xcb_window_t window, const std::string& name);

/// The window that the window manager reports as active; none if there is none.
[[nodiscard]] std::optional<xcb_window_t> activeWindow();

/// Whether the window manager shows this window full-screen, above its bars.
[[nodiscard]] bool isFullScreen(xcb_window_t window);

/// A window's place on the root window, in device pixels.
[[nodiscard]] std::optional<QRect> rootGeometry(xcb_window_t window);

/// The work area of `monitor`, both in device pixels of the root window: as the window manager reports it for
/// each monitor, else by the panels' struts. None if neither is known.
[[nodiscard]] std::optional<QRect> freeArea(const QRect& monitor);

/// The work area of the whole desktop on the current workspace, in device pixels of the root window. None if
/// the window manager does not report it.
[[nodiscard]] std::optional<QRect> workArea();

/// The places of the desktop's bars, in device pixels of the root window: its managed windows of the type
/// "dock".
[[nodiscard]] std::vector<QRect> bars();

/// The name of the window manager; empty if none runs or it has none.
[[nodiscard]] std::string windowManager();

/// Whether a window manager runs that reports which window is active, if one is.
[[nodiscard]] bool hasActiveWindowHint();

/// The child of the root window that contains `window`: the window manager's frame, else the window itself.
/// None if the window is destroyed.
[[nodiscard]] xcb_window_t topLevel(xcb_window_t window);

/// Asks the window manager to move a window on another workspace to the current one.
void moveToCurrentWorkspace(xcb_window_t window);

/// Asks the window manager, as a pager does, to activate and raise `window`.
void requestActivation(xcb_window_t window);

/// Ends the start-up notification with this ID, for which `window` has been shown.
void finishStartup(xcb_window_t window, const std::string& startupId);

/// Restacks `window` directly below `sibling`; both are override-redirect windows. Does nothing if it is
/// there already. The request stays in the connection's buffer.
void placeBelow(xcb_window_t window, xcb_window_t sibling);

/// Restacks the override-redirect window `window` below all of `others` and their frames, if any of them
/// exists.
void placeBelowAll(xcb_window_t window, const std::vector<xcb_window_t>& others);

/// Reports all of a shown window, `size` in device pixels, to the compositing manager as damaged, without
/// drawing anything. The request stays in the connection's buffer.
void reportDamage(xcb_window_t window, QSize size);

/// Limits the area in which `window` takes pointer events to `rectangles`, in device pixels of the window.
void setInputShape(xcb_window_t window, const std::vector<QRect>& rectangles);

/// Asks the window manager to leave a window that is not shown yet out of task bars and pagers.
void leaveOutOfTaskBars(xcb_window_t window);

/// Sets the bounding shape of `window` to `region`, in device pixels of the window; an empty region resets
/// it.
void setBoundingShape(xcb_window_t window, const QRegion& region);

} // namespace corvane::x11
