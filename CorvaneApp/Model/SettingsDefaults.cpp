#include "Model/SettingsDefaults.h"

#include "Style/Utf8.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace corvane {

SettingsDefaults::SettingsDefaults(QSettings& settings)
    : settings_(settings) {
    settings_.setFallbacksEnabled(false);
}

std::optional<std::string> SettingsDefaults::data(std::string_view key) const {
    const QVariant value = settings_.value(fromUtf8(key));
    if (value.typeId() != QMetaType::QByteArray) return std::nullopt;
    return value.toByteArray().toStdString();
}

void SettingsDefaults::setData(std::string_view key, std::string_view bytes) {
    settings_.setValue(fromUtf8(key), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

bool SettingsDefaults::boolean(std::string_view key) const {
    const QVariant value = settings_.value(fromUtf8(key));
    // A boolean stored in an INI file is read back as text.
    return value.typeId() == QMetaType::Bool
               ? value.toBool()
               : value.typeId() == QMetaType::QString && value.toString() == u"true";
}

void SettingsDefaults::setBoolean(std::string_view key, bool value) {
    settings_.setValue(fromUtf8(key), value);
}

} // namespace corvane
