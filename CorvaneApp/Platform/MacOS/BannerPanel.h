#pragma once

#include "Platform/FloatingPanel.h"

namespace corvane {

/// Creates native AppKit panels.
class MacFloatingPanels : public FloatingPanels {
  public:
    [[nodiscard]] std::unique_ptr<FloatingPanel> make() override;
    void keepBelow(const std::vector<QWidget*>& /*windows*/) override {}
};

/// The NSPanel behind a panel that MacFloatingPanels created.
[[nodiscard]] void* nativeHandle(const FloatingPanel& panel);

} // namespace corvane
