#include "Platform/Linux/StartupToken.h"

#include <QtGlobal>

#include <algorithm>

namespace corvane {

namespace {

constexpr const char* startupKey = "desktop-startup-id";
constexpr const char* activationKey = "activation-token";
// Real tokens have fewer than a hundred characters.
constexpr std::size_t mostCharacters = 1024;

/// `value` if it can be a token: one line of reasonable length.
std::string checked(std::string value) {
    const bool isToken = value.size() <= mostCharacters && value.find_first_of("\r\n") == std::string::npos &&
                         value.find('\0') == std::string::npos;
    return isToken ? value : std::string();
}

std::string line(const char* key, const std::string& value) {
    return value.empty() ? std::string() : std::string(key) + "=" + value + "\n";
}

} // namespace

StartupToken StartupToken::fromEnvironment() {
    return {checked(qgetenv("DESKTOP_STARTUP_ID").toStdString()),
            checked(qgetenv("XDG_ACTIVATION_TOKEN").toStdString())};
}

QVariantMap StartupToken::platformData() const {
    QVariantMap data;
    if (!startupId.empty()) data.insert(QLatin1String(startupKey), QString::fromStdString(startupId));
    if (!activationToken.empty())
        data.insert(QLatin1String(activationKey), QString::fromStdString(activationToken));
    return data;
}

StartupToken StartupToken::fromPlatformData(const QVariantMap& data) {
    return {checked(data.value(QLatin1String(startupKey)).toString().toStdString()),
            checked(data.value(QLatin1String(activationKey)).toString().toStdString())};
}

std::string StartupToken::message() const {
    return line(startupKey, startupId) + line(activationKey, activationToken);
}

StartupToken StartupToken::fromMessage(std::string_view message) {
    StartupToken token;
    while (!message.empty()) {
        const std::string_view text = message.substr(0, message.find('\n'));
        message.remove_prefix(std::min(message.size(), text.size() + 1));
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view key = text.substr(0, equals);
        if (key == startupKey) token.startupId = checked(std::string(text.substr(equals + 1)));
        if (key == activationKey) token.activationToken = checked(std::string(text.substr(equals + 1)));
    }
    return token;
}

} // namespace corvane
