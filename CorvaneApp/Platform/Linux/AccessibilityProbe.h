#pragma once

#include <chrono>
#include <string>

namespace corvane {

/// Whether the accessibility bus at `address`, or the registry on it, does not reply within `patience`. Qt,
/// which connects to both as soon as it finds them, would block the main thread: minutes for the bus, 50
/// seconds for the registry. False where there is none, and for an empty address.
[[nodiscard]] bool accessibilityHangs(const std::string& address, std::chrono::milliseconds patience);

} // namespace corvane
