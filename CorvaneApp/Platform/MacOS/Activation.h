#pragma once

#include "Platform/Activation.h"

namespace corvane {

/// Activates the application along with the window. The system switches to the Space of a window that becomes
/// active.
class MacActivation : public Activation {
  public:
    void present(QWidget& window) override;
};

} // namespace corvane
