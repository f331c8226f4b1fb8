#pragma once

#include "Platform/Linux/WindowChoice.h"

#include <functional>
#include <memory>
#include <vector>

class QObject;

namespace corvane {

/// One of the ways to bring another program's window to the front. Main thread only.
class WindowRaiser {
  public:
    /// Called with whether a window was found and activated.
    using Report = std::function<void(bool isFound)>;

    WindowRaiser() = default;
    WindowRaiser(const WindowRaiser&) = delete;
    WindowRaiser& operator=(const WindowRaiser&) = delete;
    virtual ~WindowRaiser() = default;

    /// Raises and focuses the window that matches `search`, on the workspace where it is. Calls `report`
    /// once, immediately or within a few seconds; not at all if `context` is destroyed first. This object
    /// need not live that long.
    virtual void raise(const WindowSearch& search, QObject& context, Report report) = 0;
};

/// The raisers that may work on the current desktop, to be tried in this order: sway's own protocol, KWin's
/// scripts (in a Wayland session; X11's protocol does not know native windows there), X11's protocol.
[[nodiscard]] std::vector<std::shared_ptr<WindowRaiser>> windowRaisers();

} // namespace corvane
