#pragma once

#include <QRect>
#include <QRegion>
#include <QSize>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The X server that Qt is connected to. Every function does nothing, or gives nothing, on another window
/// system. Main thread only.
namespace corvane::x11 {

/// Qt's own connection; null where Qt runs on something else.
[[nodiscard]] xcb_connection_t* connection();

/// The root window of Qt's screen.
[[nodiscard]] xcb_window_t rootWindow();

/// The number of a name; 0 where there is no X server.
[[nodiscard]] xcb_atom_t atom(const std::string& name);

/// Sends what waits in the connection's buffer. Qt leaves opacity, shape and stacking requests there until
/// something else happens to send them.
void flush();

/// The window by which the compositing manager of Qt's screen makes itself known; none where none runs.
[[nodiscard]] xcb_window_t compositingManager();

/// Whether a compositing manager runs, so that windows are blended with what lies below. True on other window
/// systems.
[[nodiscard]] bool isComposited();

/// Whether the compositing manager blurs what lies behind the regions that windows ask for. May change while
/// it runs. False on other window systems.
[[nodiscard]] bool blursBehind();

/// Asks for the blur behind `region` of the window, in its device pixels; an empty one ends it.
void setBlurRegion(xcb_window_t window, const QRegion& region);

/// A window's property as text; empty when it has none.
[[nodiscard]] std::string text(xcb_window_t window, const std::string& name);

/// The window that the window manager calls active.
[[nodiscard]] std::optional<xcb_window_t> activeWindow();

/// A window's place on the root window, in device pixels.
[[nodiscard]] std::optional<QRect> rootGeometry(xcb_window_t window);

/// The part of `monitor` that panels leave free, both in device pixels of the root window: as the window
/// manager tells for each monitor, else by what the panels themselves ask for. None where neither is known.
[[nodiscard]] std::optional<QRect> freeArea(const QRect& monitor);

/// Whether the window manager tells which window is active.
[[nodiscard]] bool hasActiveWindowHint();

/// The child of the root window that holds `window`: the frame that the window manager has put around it,
/// else the window itself. None when the window is gone.
[[nodiscard]] xcb_window_t topLevel(xcb_window_t window);

/// Asks the window manager to show a window that stands on another workspace on the current one.
void moveToCurrentWorkspace(xcb_window_t window);

/// Asks the window manager, as a pager does, to make `window` the active one, in front of all others.
void requestActivation(xcb_window_t window);

/// Ends the feedback of the start with this identifier, for which `window` has been shown.
void finishStartup(xcb_window_t window, const std::string& startupId);

/// Puts `window` directly below `sibling`, both being windows that no window manager looks after. Nothing
/// happens where it is there already. Waits in the connection's buffer.
void placeBelow(xcb_window_t window, xcb_window_t sibling);

/// Puts `window`, which no window manager looks after, below all of `others`, wherever their frames are, if
/// one of them is there.
void placeBelowAll(xcb_window_t window, const std::vector<xcb_window_t>& others);

/// Reports all of a shown window, `size` in device pixels, to the compositing manager as changed, without
/// drawing anything. Waits in the connection's buffer.
void reportDamage(xcb_window_t window, QSize size);

/// Limits where `window` takes pointer events to `rectangles`, in device pixels of the window.
void setInputShape(xcb_window_t window, const std::vector<QRect>& rectangles);

/// Limits what of `window` is there at all to `region`, in device pixels of the window; an empty region lifts
/// the limit.
void setBoundingShape(xcb_window_t window, const QRegion& region);

} // namespace corvane::x11
