#pragma once

#include "Platform/SystemSymbols.h"

namespace corvane {

/// None: desktops have no symbols under these names.
class LinuxSystemSymbols : public SystemSymbols {
  public:
    [[nodiscard]] bool draw(QImage& /*image*/, const QString& /*name*/, const QRectF& /*box*/) override {
        return false;
    }
};

} // namespace corvane
