#pragma once

#include "Platform/Appearance.h"
#include "Platform/MacOS/Observation.h"

#include <memory>

namespace corvane {

/// Queries the system at each call.
class MacAppearance : public Appearance {
    Q_OBJECT

  public:
    MacAppearance();
    ~MacAppearance() override;

    [[nodiscard]] ColorScheme colorScheme() const override;
    [[nodiscard]] bool reduceMotion() const override;
    [[nodiscard]] Contrast contrast() const override;

  private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
    Observation displayOptionsChange_;
};

} // namespace corvane
