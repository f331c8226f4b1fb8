#pragma once

#include "Platform/LoginItem.h"

namespace corvane {

/// The system's service for the main application. Works for a signed bundle only, an ad-hoc signature will
/// do.
class MacLoginItem : public LoginItem {
  public:
    /// Also false for an item that the user has switched off in the system's settings.
    [[nodiscard]] bool isEnabled() const override;

    /// An item that waits for the user's approval cannot be switched on from here: the system's settings are
    /// opened then.
    void setEnabled(bool enabled) override;
};

} // namespace corvane
