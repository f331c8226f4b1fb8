#pragma once

#include <QVariantMap>

#include <string>
#include <string_view>

namespace corvane {

/// What a launcher passes to a program that the user starts, as proof of the user's request: the start-up ID
/// of X11 and the activation token of Wayland. Both may be empty.
struct StartupToken {
    std::string startupId;
    std::string activationToken;

    bool operator==(const StartupToken&) const = default;

    /// The token of this process. Read it before Qt removes the variables from the environment.
    [[nodiscard]] static StartupToken fromEnvironment();

    /// In the form in which `org.freedesktop.Application` passes them.
    [[nodiscard]] QVariantMap platformData() const;
    [[nodiscard]] static StartupToken fromPlatformData(const QVariantMap& data);

    /// As one message with a line for each. Other lines are ignored when it is parsed.
    [[nodiscard]] std::string message() const;
    [[nodiscard]] static StartupToken fromMessage(std::string_view message);
};

} // namespace corvane
