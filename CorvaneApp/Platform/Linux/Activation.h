#pragma once

#include "Platform/Activation.h"

namespace corvane {

/// Windows are activated one by one here. A window on another workspace is moved to the current one first:
/// asked to be active, it would stay there, unseen.
class LinuxActivation : public Activation {
  public:
    void present(QWidget& window) override;
};

} // namespace corvane
