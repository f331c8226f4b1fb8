#pragma once

#include <chrono>
#include <string>

namespace corvane::busprobe {

/// The address at which the session bus is looked for: of DBUS_SESSION_BUS_ADDRESS, else in the runtime
/// folder if something is there; empty if there is neither.
[[nodiscard]] std::string sessionAddress();

/// The address of AT_SPI_BUS_ADDRESS, else of the accessibility bus in the runtime folder, of the display
/// that DISPLAY names if there are several; empty if there is none.
[[nodiscard]] std::string accessibilityAddress();

/// Whether something listens at `address` and does not reply within `patience`: a bus that hangs. Whoever
/// connects to it waits for minutes. False for an address that is not a Unix socket's.
[[nodiscard]] bool hangs(const std::string& address, std::chrono::milliseconds patience);

} // namespace corvane::busprobe
