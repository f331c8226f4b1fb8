#pragma once

#include "Platform/Linux/SwayOutputs.h"
#include "Platform/Screens.h"

#include <memory>

class QScreen;

namespace corvane {

/// The screens as Qt knows them; the main one is that of the active window, if the X server reports it. Under
/// sway, the bars and the focus are as sway reports them.
class LinuxScreens : public Screens {
    Q_OBJECT

  public:
    LinuxScreens();

    [[nodiscard]] std::optional<QRect> mainVisibleFrame() const override;
    [[nodiscard]] std::optional<QRect> visibleFrameAt(QPoint place) const override;

  private:
    void watch(QScreen* screen);
    [[nodiscard]] QScreen* mainScreen() const;
    [[nodiscard]] std::optional<QRect> visibleFrame(const QScreen* screen) const;

    // Refreshed by queries of the screens, even by const ones.
    std::unique_ptr<SwayOutputs> sway_;
};

} // namespace corvane
