#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string_view>
#include <vector>

class QWidget;

namespace corvane {

/// Keeps the panels whole under picom 12, by reporting all of them to it as changed before any of them
/// changes.
///
/// That compositing manager copies the wallpaper over the bounding rectangle of all translucent parts of the
/// screen that have changed since its last frame, and then draws the windows only where they have changed. It
/// means to limit the copy, but by the clip of the picture that it copies from, which an X server that draws
/// in software ignores (in a virtual machine without 3D, over VNC, Xvfb). So two clocks that tick within one
/// frame erase what is between them until that changes the next time. When all panels are reported as changed
/// before each change, whatever a frame takes in, there are only whole panels between its first and its last.
///
/// Nothing is reported to other compositing managers. Main thread only.
class PanelDamage {
  public:
    void add(QWidget& window) { windows_.push_back(&window); }
    void remove(QWidget& window) { std::erase(windows_, &window); }

    /// Checks which compositing manager runs; to be called when a panel is shown, and now and then after
    /// that.
    void followCompositor();

    /// To be called right before one of the windows changes what the screen shows; and now and then, since
    /// windows of other programs, and the compositing manager's own animations, erase panels too.
    void reportAll() const;

    /// Whether a compositing manager erases what lies between two changes, by what its "COMPTON_VERSION"
    /// says. That property is empty for everything but picom and its relatives.
    [[nodiscard]] static bool erasesBetweenChanges(std::string_view version);

  private:
    std::vector<QWidget*> windows_;
    std::optional<xcb_window_t> compositor_;
    bool isNeeded_ = false;
};

} // namespace corvane
