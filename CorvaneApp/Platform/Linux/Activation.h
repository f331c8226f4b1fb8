#pragma once

#include "Platform/Activation.h"
#include "Platform/Linux/StartupToken.h"

#include <utility>

namespace corvane {

/// Windows are activated one by one here. A window on another workspace is moved to the current one first:
/// asked to be active, it would stay there, unseen.
///
/// The window manager is asked as a pager asks it, on the user's behalf. Asked by the application itself,
/// some (Metacity, Mutter, KWin) leave a covered window where it is and only mark it as demanding attention,
/// because the program that the user was in last is another one.
class LinuxActivation : public Activation {
  public:
    void present(QWidget& window) override;

    /// The start by which the user asked for the window that is presented next.
    void setStartup(StartupToken token) { startup_ = std::move(token); }

  private:
    StartupToken startup_;
};

} // namespace corvane
