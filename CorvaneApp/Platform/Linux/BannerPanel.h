#pragma once

#include "Platform/BannerPanel.h"
#include "Platform/Linux/PanelDamage.h"
#include "Platform/Linux/PopupPresses.h"
#include "Platform/Linux/StackingGuard.h"

namespace corvane {

/// Panels as override-redirect X11 windows: no window manager places, focuses, covers or lists them. On other
/// window systems they are ordinary frameless windows that do not ask for the focus.
class LinuxBannerPanels : public BannerPanels {
  public:
    /// `damage` must outlive this object and its panels.
    explicit LinuxBannerPanels(PanelDamage& damage);

    /// A panel must not outlive this object.
    [[nodiscard]] std::unique_ptr<BannerPanel> make() override;
    void keepBelow(const std::vector<QWidget*>& windows) override { guard_.keepBelow(windows); }

  private:
    void followCompositor();

    PanelDamage& damage_;
    StackingGuard guard_;
    PopupPresses presses_{guard_};
};

} // namespace corvane
