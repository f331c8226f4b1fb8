#pragma once

#include "Platform/Screens.h"

class QScreen;

namespace corvane {

/// The screens as Qt knows them; the main one is that of the active window, if the X server reports it.
class LinuxScreens : public Screens {
    Q_OBJECT

  public:
    LinuxScreens();

    [[nodiscard]] std::optional<QRect> mainVisibleFrame() const override;

  private:
    void watch(QScreen* screen);
};

} // namespace corvane
