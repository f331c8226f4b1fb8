#pragma once

#include "Platform/SystemSymbols.h"

namespace corvane {

/// SF Symbols.
class MacSystemSymbols : public SystemSymbols {
  public:
    [[nodiscard]] bool draw(QImage& image, const QString& name, const QRectF& box) override;
};

} // namespace corvane
