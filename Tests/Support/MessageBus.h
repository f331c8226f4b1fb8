#pragma once

#include <filesystem>
#include <string>

namespace corvane::test {

/// The configuration of a session bus for dbus-daemon. It listens at `socket`, and starts those services
/// that are described in the folder `services`; none without one.
[[nodiscard]] std::string busConfiguration(const std::filesystem::path& socket,
                                           const std::filesystem::path& services = {});

/// Whether a server accepts connections at this socket, whose file may exist before it does.
[[nodiscard]] bool acceptsConnections(const std::filesystem::path& socket);

} // namespace corvane::test
