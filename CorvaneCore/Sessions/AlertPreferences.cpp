#include "Sessions/AlertPreferences.h"

#include "Support/Json.h"
#include "Support/Text.h"

#include <utility>

namespace corvane {

namespace {

// 2001-01-01 00:00:00 UTC, from which stored dates count.
constexpr Date storedEpoch(978'307'200, 0);

// Each returns false when the member is missing or of another type.
bool readMember(const Json& document, std::string_view key, std::string& field) {
    const Json* const member = document.find(key);
    std::optional<std::string> value = member == nullptr ? std::nullopt : member->text();
    if (!value) return false;
    field = *std::move(value);
    return true;
}

bool readMember(const Json& document, std::string_view key, bool& field) {
    const Json* const member = document.find(key);
    const bool* const value = member == nullptr ? nullptr : member->ifBoolean();
    if (value == nullptr) return false;
    field = *value;
    return true;
}

bool readMember(const Json& document, std::string_view key, std::int64_t& field) {
    const Json* const member = document.find(key);
    const Json::Number* const number = member == nullptr ? nullptr : member->ifNumber();
    const std::optional<std::int64_t> value = number == nullptr ? std::nullopt : number->toInteger();
    if (!value) return false;
    field = *value;
    return true;
}

bool readMember(const Json& document, std::string_view key, std::optional<Date>& field) {
    const Json* const member = document.find(key);
    if (member == nullptr || member->isNull()) return true;
    const Json::Number* const number = member->ifNumber();
    const std::optional<double> seconds = number == nullptr ? std::nullopt : number->toDouble();
    if (!seconds) return false;
    field = storedEpoch + Seconds(*seconds);
    return true;
}

} // namespace

Date AlertPreferences::storable(Date date) {
    return storedEpoch + (date - storedEpoch);
}

bool AlertPreferences::isQuiet(Date now) const {
    return quietUntil && now < *quietUntil;
}

Seconds AlertPreferences::reminderInterval() const {
    constexpr Seconds minute(60);
    return reminderMinutes > 0 ? minute * static_cast<double>(reminderMinutes) : Seconds::zero();
}

std::optional<std::string> AlertPreferences::sound(EventKind kind) const {
    if (!soundsOn) return std::nullopt;
    switch (kind) {
    case EventKind::needsPermission:
    case EventKind::needsInput:
        return waitingSound;
    case EventKind::finished:
        return doneSound;
    case EventKind::running:
    case EventKind::ended:
        break;
    }
    return std::nullopt;
}

AlertPreferences AlertPreferences::load(const UserDefaults& defaults, std::string_view key) {
    const std::optional<std::string> data = defaults.data(key);
    const std::optional<Json> document = data ? Json::parse(*data) : std::nullopt;
    if (!document) return {};

    AlertPreferences stored;
    const bool isComplete = readMember(*document, "waitingSound", stored.waitingSound) &&
                            readMember(*document, "doneSound", stored.doneSound) &&
                            readMember(*document, "soundsOn", stored.soundsOn) &&
                            readMember(*document, "alertWhenDone", stored.alertWhenDone) &&
                            readMember(*document, "reminderMinutes", stored.reminderMinutes) &&
                            readMember(*document, "quietUntil", stored.quietUntil);
    return isComplete ? stored : AlertPreferences();
}

void AlertPreferences::save(UserDefaults& defaults, std::string_view key) const {
    // JSON cannot hold such text; keeping what is stored is better than storing nothing.
    if (!text::isUtf8(waitingSound) || !text::isUtf8(doneSound)) return;

    std::string document;
    const auto add = [&](std::string_view name, const Json& value) {
        document += document.empty() ? '{' : ',';
        document += Json(name).write(Json::Layout::compact);
        document += ':';
        document += value.write(Json::Layout::compact);
    };
    add("waitingSound", waitingSound);
    add("doneSound", doneSound);
    add("soundsOn", soundsOn);
    add("alertWhenDone", alertWhenDone);
    add("reminderMinutes", Json::integer(reminderMinutes));
    if (quietUntil) add("quietUntil", Json::real((*quietUntil - storedEpoch).count()));
    document += '}';
    defaults.setData(key, document);
}

} // namespace corvane
