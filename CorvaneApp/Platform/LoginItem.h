#pragma once

#include <stdexcept>

namespace corvane {

/// Why the login item could not be changed. `what()` is a sentence for users.
class LoginItemError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Whether the system starts the application when the user logs in. Main thread only.
class LoginItem {
  public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    /// Reads the actual state back from the system: the user may have changed it elsewhere.
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// Registers the application at its current location, or unregisters it. Idempotent. Throws
    /// LoginItemError, in which case nothing has changed.
    virtual void setEnabled(bool enabled) = 0;

    /// Whether this item, rather than the user, started the running process. False on systems that do not
    /// report it.
    [[nodiscard]] virtual bool hasStartedThisProcess() const { return false; }
};

} // namespace corvane
