#pragma once

#include "Platform/PanelContent.h"

#include <QPoint>
#include <QSize>

#include <chrono>
#include <memory>
#include <vector>

namespace corvane {

/// A small borderless window that carries one view above everything else: on every workspace, over
/// full-screen windows, never active and never focused. Main thread only.
///
/// Sizes and places are those of the card, that is of the view, in device-independent pixels of the desktop
/// with y growing downwards; a shadow outside the card is the panel's own affair. Starts hidden.
class FloatingPanel {
  public:
    FloatingPanel() = default;
    FloatingPanel(const FloatingPanel&) = delete;
    FloatingPanel& operator=(const FloatingPanel&) = delete;
    virtual ~FloatingPanel() = default;

    /// Puts `view` into the panel, at exactly `size`, in place of what was there, without a fade. The old
    /// view goes when the event loop runs next: it may be in the middle of one of its own handlers.
    virtual void setContent(std::unique_ptr<PanelContent> view, QSize size) = 0;

    /// The size last given.
    [[nodiscard]] virtual QSize size() const = 0;

    /// Moves the card's top left corner to `origin`, at once. A slide under way goes on and ends
    /// there.
    virtual void setOrigin(QPoint origin) = 0;

    /// Shows the panel in front without activating the application, coming in over `duration` from
    /// transparent to opaque, and from `slide` pixels above its place. Where the desktop cannot blend windows
    /// it only slides.
    virtual void fadeIn(std::chrono::milliseconds duration, int slide) = 0;

    /// Goes over `duration` to transparent and stays where it is; takes no clicks from now on. Where the
    /// desktop cannot blend windows it disappears at once.
    virtual void fadeOut(std::chrono::milliseconds duration) = 0;

    /// Takes the panel off the screen.
    virtual void orderOut() = 0;

    /// Puts the panel above every other one, without activating anything. Nothing happens while it is hidden.
    virtual void orderFront() = 0;
};

/// Makes floating panels.
class FloatingPanels {
  public:
    FloatingPanels() = default;
    FloatingPanels(const FloatingPanels&) = delete;
    FloatingPanels& operator=(const FloatingPanels&) = delete;
    virtual ~FloatingPanels() = default;

    [[nodiscard]] virtual std::unique_ptr<FloatingPanel> make() = 0;

    /// Keeps all panels, those that are made later too, below these open windows of the application rather
    /// than above everything. To be called again, without a window, when they have closed. Nothing happens
    /// where the system keeps menus above panels by itself.
    virtual void keepBelow(const std::vector<QWidget*>& windows) = 0;
};

} // namespace corvane
