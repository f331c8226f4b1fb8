#pragma once

#include "Platform/MacOS/Observation.h"
#include "Platform/Screens.h"

namespace corvane {

/// The upper edge of the screen with the menu bar (the origin of Qt's coordinates) in AppKit's coordinates. 0
/// without a screen.
[[nodiscard]] double desktopTop();

/// The screens as AppKit reports them. The main one is that of the window with the keyboard focus.
class MacScreens : public Screens {
    Q_OBJECT

  public:
    MacScreens();

    [[nodiscard]] std::optional<QRect> mainVisibleFrame() const override;
    [[nodiscard]] std::optional<QRect> visibleFrameAt(QPoint place) const override;

  private:
    Observation parametersChange_;
};

} // namespace corvane
