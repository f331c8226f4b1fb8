#pragma once

#include "Platform/LoginItem.h"

namespace corvane {

/// The system's service for the main application. Works for a signed bundle only; an ad-hoc signature
/// suffices.
class MacLoginItem : public LoginItem {
  public:
    /// Also false for an item that the user has switched off in System Settings.
    [[nodiscard]] bool isEnabled() const override;

    /// An item that requires the user's approval cannot be enabled from here: System Settings is opened
    /// instead.
    void setEnabled(bool enabled) override;
};

} // namespace corvane
