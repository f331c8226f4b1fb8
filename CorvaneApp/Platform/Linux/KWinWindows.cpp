#include "Platform/Linux/KWinWindows.h"

#include "Platform/Linux/KWinScript.h"

#include <QDBusConnection>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cstdint>
#include <utility>

namespace corvane {

std::vector<OpenWindow> kwinWindows(const QByteArray& json) {
    std::vector<OpenWindow> windows;
    const QJsonArray list = QJsonDocument::fromJson(json).array();
    for (const QJsonValue& window : list) {
        const auto id = static_cast<std::uint32_t>(window[QLatin1String("id")].toInteger());
        windows.push_back({static_cast<pid_t>(window[QLatin1String("pid")].toInteger()),
                           id != 0 ? std::optional(id) : std::nullopt,
                           window[QLatin1String("name")].toString(),
                           window[QLatin1String("title")].toString()});
    }
    return windows;
}

void KWinWindowRaiser::raise(const WindowSearch& search, QObject& context, Report report) {
    if (!QDBusConnection::sessionBus().isConnected()) {
        report(false);
        return;
    }
    auto* const script = new KWinScript(search, std::move(report), context);
    script->start(limit_);
}

} // namespace corvane
