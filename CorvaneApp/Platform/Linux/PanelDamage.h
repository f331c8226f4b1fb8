#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

class QWidget;

namespace corvane {

/// Keeps the panels (banners and the tray panel) intact under picom 12 by reporting all of them as damaged
/// before any of them changes.
///
/// That compositing manager copies the wallpaper over the bounding rectangle of all translucent parts of the
/// screen that were damaged since its last frame, and then draws the windows only where they were damaged. It
/// intends to clip the copy, but sets the clip on the source picture, where an X server that renders in
/// software ignores it (in a virtual machine without 3D, over VNC, Xvfb). So two clocks that tick within one
/// frame erase what is between them until that area changes again. When all panels are reported as damaged
/// before each change, the bounding rectangle of a frame's damage covers only whole panels.
///
/// Nothing is reported to other compositing managers. Main thread only.
class PanelDamage {
  public:
    /// Reports a shown window as damaged.
    using Report = std::function<void(const QWidget& window)>;

    PanelDamage();
    explicit PanelDamage(Report report)
        : report_(std::move(report)) {}
    PanelDamage(const PanelDamage&) = delete;
    PanelDamage& operator=(const PanelDamage&) = delete;

    /// A window must be removed before it is destroyed.
    void add(QWidget& window) { windows_.push_back(&window); }
    void remove(QWidget& window) { std::erase(windows_, &window); }

    /// Checks which compositing manager runs; call it once at the start, and whenever the manager has
    /// changed.
    void followCompositor();
    /// Treats the compositing manager as one with this "COMPTON_VERSION".
    void setVersion(std::string_view version) { isNeeded_ = erasesBetweenChanges(version); }

    /// Whether anything is reported to the current compositing manager.
    [[nodiscard]] bool isNeeded() const { return isNeeded_; }

    /// Call it right before one of the windows changes what the screen shows, and periodically, since windows
    /// of other programs and the compositing manager's own animations erase panels too.
    void reportAll() const;

    /// Whether a compositing manager erases what is between two changes, judging by its "COMPTON_VERSION".
    /// Only picom and its relatives set that property.
    [[nodiscard]] static bool erasesBetweenChanges(std::string_view version);

  private:
    Report report_;
    std::vector<QWidget*> windows_;
    std::optional<xcb_window_t> compositor_;
    bool isNeeded_ = false;
};

} // namespace corvane
