#pragma once

#include "Platform/PanelContent.h"

#include <QPoint>
#include <QSize>

#include <chrono>
#include <memory>
#include <vector>

namespace corvane {

/// A small borderless window that shows one view above everything else: on every workspace, over full-screen
/// windows, never active and never focused. Main thread only.
///
/// Sizes and positions are those of the card, that is of the view, in device-independent desktop pixels with
/// y growing downwards; the panel handles any shadow outside the card itself. Initially hidden.
class BannerPanel {
  public:
    BannerPanel() = default;
    BannerPanel(const BannerPanel&) = delete;
    BannerPanel& operator=(const BannerPanel&) = delete;
    virtual ~BannerPanel() = default;

    /// Replaces the panel's content with `view`, at exactly `size`, without a fade. The old view is deleted
    /// in the event loop's next iteration: it may be in the middle of one of its own handlers.
    virtual void setContent(std::unique_ptr<PanelContent> view, QSize size) = 0;

    /// The last size set.
    [[nodiscard]] virtual QSize size() const = 0;

    /// Moves the card's top left corner to `origin` immediately. A slide in progress continues and ends
    /// there.
    virtual void setOrigin(QPoint origin) = 0;

    /// Shows the panel in front without activating the application, fading in over `duration` while it slides
    /// down `slide` pixels to its place. Where the desktop cannot blend windows it only slides.
    virtual void fadeIn(std::chrono::milliseconds duration, int slide) = 0;

    /// Fades out over `duration` in place; ignores clicks from the start. Where the desktop cannot blend
    /// windows it disappears at once.
    virtual void fadeOut(std::chrono::milliseconds duration) = 0;

    /// Hides the panel.
    virtual void orderOut() = 0;

    /// Raises the panel above all others, without activating anything. Does nothing while it is hidden.
    virtual void orderFront() = 0;
};

/// Creates floating panels.
class BannerPanels {
  public:
    BannerPanels() = default;
    BannerPanels(const BannerPanels&) = delete;
    BannerPanels& operator=(const BannerPanels&) = delete;
    virtual ~BannerPanels() = default;

    [[nodiscard]] virtual std::unique_ptr<BannerPanel> make() = 0;

    /// Keeps all panels, even those created later, below these open windows of the application rather than
    /// above everything. Call it again, without windows, when they have closed. Does nothing if the system
    /// keeps menus above panels by itself.
    virtual void keepBelow(const std::vector<QWidget*>& windows) = 0;
};

} // namespace corvane
