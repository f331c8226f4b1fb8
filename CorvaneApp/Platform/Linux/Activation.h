#pragma once

#include "Platform/Activation.h"
#include "Platform/Linux/StartupToken.h"

#include <utility>

namespace corvane {

class Screens;

/// On Linux, each window is activated individually. A window on another workspace is first moved to the
/// current one: activation alone would leave it there, unseen.
///
/// Requests activation as a pager does, on the user's behalf. If an application makes the request for itself,
/// some window managers (Metacity, Mutter, KWin) leave a covered window where it is and only mark it as
/// demanding attention, because the user last used another program.
class LinuxActivation : public Activation {
  public:
    /// `screens` must outlive it.
    explicit LinuxActivation(const Screens& screens)
        : screens_(screens) {}

    void present(QWidget& window) override;

    /// Sets the token of the start by which the user requested the window that is presented next.
    void setStartup(StartupToken token) { startup_ = std::move(token); }

  private:
    const Screens& screens_;
    StartupToken startup_;
};

} // namespace corvane
