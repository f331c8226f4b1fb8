#pragma once

#include <QVariantMap>

#include <string>
#include <string_view>

namespace corvane {

/// What a launcher gives to a program that the user starts, by which the desktop knows the user's wish later:
/// the start-up identifier of X11 and the activation token of Wayland. Both may be empty.
struct StartupToken {
    std::string startupId;
    std::string activationToken;

    bool operator==(const StartupToken&) const = default;

    /// Of this process. To be read before Qt, which takes the variables out of the environment.
    [[nodiscard]] static StartupToken fromEnvironment();

    /// As `org.freedesktop.Application` hands them on.
    [[nodiscard]] QVariantMap platformData() const;
    [[nodiscard]] static StartupToken fromPlatformData(const QVariantMap& data);

    /// As one message of bytes, one line each. What is no such line is ignored when it is read.
    [[nodiscard]] std::string message() const;
    [[nodiscard]] static StartupToken fromMessage(std::string_view message);
};

} // namespace corvane
