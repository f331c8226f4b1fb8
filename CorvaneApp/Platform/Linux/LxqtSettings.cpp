#include "Platform/Linux/LxqtSettings.h"

#include <QColor>
#include <QString>

#include <string>

namespace corvane {

std::optional<int> LxqtSettings::parsed(std::string_view text) {
    const std::optional<std::string> name = ConfigFiles::value(text, "Palette", "window_color");
    if (!name) return std::nullopt;
    const QColor color(QString::fromStdString(*name));
    return color.isValid() ? std::optional(qGray(color.rgb())) : std::nullopt;
}

QStringList LxqtSettings::sessionFiles() {
    return ConfigFiles::ofSession(QLatin1String("LXQt"), QLatin1String("lxqt/lxqt.conf"));
}

LxqtSettings::LxqtSettings(const QStringList& files)
    : files_(files) {
    connect(&files_, &ConfigFiles::changed, this, &LxqtSettings::follow);
    follow();
}

void LxqtSettings::follow() {
    std::optional<int> said;
    for (const std::string& text : files_.texts()) {
        if (!said) said = parsed(text);
    }
    if (said == windowLightness_) return;
    windowLightness_ = said;
    Q_EMIT changed();
}

} // namespace corvane
