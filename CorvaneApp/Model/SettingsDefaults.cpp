#include "Model/SettingsDefaults.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace corvane {

namespace {

QString settingsKey(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace

SettingsDefaults::SettingsDefaults(QSettings& settings)
    : settings_(settings) {
    settings_.setFallbacksEnabled(false);
}

std::optional<std::string> SettingsDefaults::data(std::string_view key) const {
    const QVariant value = settings_.value(settingsKey(key));
    if (value.typeId() != QMetaType::QByteArray) return std::nullopt;
    return value.toByteArray().toStdString();
}

void SettingsDefaults::setData(std::string_view key, std::string_view bytes) {
    settings_.setValue(settingsKey(key), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

bool SettingsDefaults::boolean(std::string_view key) const {
    const QVariant value = settings_.value(settingsKey(key));
    // A file of text gives a stored boolean back as its name.
    return value.typeId() == QMetaType::Bool
               ? value.toBool()
               : value.typeId() == QMetaType::QString && value.toString() == u"true";
}

void SettingsDefaults::setBoolean(std::string_view key, bool value) {
    settings_.setValue(settingsKey(key), value);
}

} // namespace corvane
