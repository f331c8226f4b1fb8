#include "Platform/Linux/KdeSettings.h"

#include <QRgb>
#include <QString>

#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>

namespace corvane {

namespace {

std::optional<double> number(const std::string& text) {
    bool isNumber = false;
    const double value = QString::fromStdString(text).toDouble(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

/// Parses "red,green,blue", optionally followed by an alpha value.
std::optional<int> lightness(std::string_view text) {
    std::array<int, 3> channels{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (i > 0 && (at == end || *at++ != ',')) return std::nullopt;
        const auto [next, error] = std::from_chars(at, end, channels[i]);
        if (error != std::errc() || channels[i] < 0 || channels[i] > 255) return std::nullopt;
        at = next;
    }
    return qGray(channels[0], channels[1], channels[2]);
}

} // namespace

KdeLook KdeSettings::parsed(std::string_view text) {
    KdeLook look;
    if (const auto factor = ConfigFiles::value(text, "KDE", "AnimationDurationFactor"))
        look.animationFactor = number(*factor);
    if (const auto color = ConfigFiles::value(text, "Colors:Window", "BackgroundNormal"))
        look.windowLightness = lightness(*color);
    return look;
}

QStringList KdeSettings::sessionFiles() {
    return ConfigFiles::ofSession(QLatin1String("KDE"), QLatin1String("kdeglobals"));
}

KdeSettings::KdeSettings(const QStringList& files)
    : files_(files) {
    connect(&files_, &ConfigFiles::changed, this, &KdeSettings::follow);
    follow();
}

void KdeSettings::follow() {
    KdeLook look;
    for (const std::string& text : files_.texts()) {
        const KdeLook said = parsed(text);
        if (!look.animationFactor) look.animationFactor = said.animationFactor;
        if (!look.windowLightness) look.windowLightness = said.windowLightness;
    }
    if (look == look_) return;
    look_ = look;
    Q_EMIT changed();
}

} // namespace corvane
