#pragma once

#include "Platform/BannerPanel.h"

namespace corvane {

/// Creates native AppKit panels.
class MacBannerPanels : public BannerPanels {
  public:
    [[nodiscard]] std::unique_ptr<BannerPanel> make() override;
    void keepBelow(const std::vector<QWidget*>& /*windows*/) override {}
};

/// The NSPanel behind a panel that MacBannerPanels created.
[[nodiscard]] void* nativeHandle(const BannerPanel& panel);

} // namespace corvane
