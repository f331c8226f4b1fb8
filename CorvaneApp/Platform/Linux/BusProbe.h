#pragma once

#include <chrono>
#include <string>

namespace corvane::busprobe {

/// The session bus's address: DBUS_SESSION_BUS_ADDRESS, else that of the bus in the runtime folder if it
/// exists; empty if there is neither.
[[nodiscard]] std::string sessionAddress();

/// The accessibility bus's address: AT_SPI_BUS_ADDRESS, else that of the bus in the runtime folder,
/// preferably the one for DISPLAY; empty if there is neither.
[[nodiscard]] std::string accessibilityAddress();

/// Whether something listens at `address` but does not reply within `patience`: a bus that hangs. Connecting
/// to it would block for minutes. False for an address that is not a Unix socket's.
[[nodiscard]] bool hangs(const std::string& address, std::chrono::milliseconds patience);

} // namespace corvane::busprobe
