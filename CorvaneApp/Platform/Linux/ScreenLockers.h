#pragma once

#include <xcb/xcb.h>

#include <vector>

namespace corvane::x11 {

/// The windows by which a screen locker covers the screen: unmanaged windows of another program that fill a
/// monitor while that program, or a helper of it, grabs the keyboard. No window may be stacked above them.
/// Empty while the screen is not locked, and on other window systems, whose lockers need no help. Main thread
/// only.
[[nodiscard]] std::vector<xcb_window_t> screenLockers();

} // namespace corvane::x11
