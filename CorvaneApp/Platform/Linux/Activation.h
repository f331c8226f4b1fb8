#pragma once

#include "Platform/Activation.h"
#include "Platform/Linux/StartupToken.h"

#include <utility>

namespace corvane {

class Screens;

/// On Linux, windows are activated one by one. A window on another workspace is first moved to the current
/// one: merely activated, it would stay there, unseen.
///
/// The request is that of a pager, on the user's behalf. For a request by the application itself, some window
/// managers (Metacity, Mutter, KWin) leave a covered window where it is and only mark it as demanding
/// attention, because the user last used another program.
class LinuxActivation : public Activation {
  public:
    /// `screens` must outlive it.
    explicit LinuxActivation(const Screens& screens)
        : screens_(screens) {}

    void present(QWidget& window) override;

    /// The token of the start by which the user requested the window that is presented next.
    void setStartup(StartupToken token) { startup_ = std::move(token); }

  private:
    const Screens& screens_;
    StartupToken startup_;
};

} // namespace corvane
