#include "Sessions/AlertPreferences.h"

#include "Sessions/Decimal.h"
#include "Support/Json.h"
#include "Support/Text.h"

#include <limits>
#include <utility>

namespace corvane {

namespace {

// 2001-01-01 00:00:00 UTC, from which stored dates count, in seconds since 1970.
constexpr std::int64_t storedEpoch = 978'307'200;
constexpr std::int32_t nanosecondsPerSecond = 1'000'000'000;

// The exact number of seconds since the stored epoch as decimal text. Digits are written by hand since a
// double keeps no more than a tenth of a microsecond of today's dates.
std::string numberFromDate(Date date) {
    std::uint64_t whole = 0;
    std::int32_t nanoseconds = date.nanoseconds();
    std::string text;
    if (date.seconds() >= storedEpoch) {
        whole = static_cast<std::uint64_t>(date.seconds() - storedEpoch);
    } else {
        whole = static_cast<std::uint64_t>(storedEpoch) - static_cast<std::uint64_t>(date.seconds());
        if (nanoseconds > 0) {
            --whole;
            nanoseconds = nanosecondsPerSecond - nanoseconds;
        }
        text = "-";
    }
    text += std::to_string(whole);
    if (nanoseconds > 0) {
        // The leading one keeps the zeros after the point.
        std::string fraction = std::to_string(nanosecondsPerSecond + nanoseconds);
        fraction.front() = '.';
        fraction.erase(fraction.find_last_not_of('0') + 1);
        text += fraction;
    }
    return text;
}

// Stops at the first or last date that there is.
Date dateFromNumber(std::string_view number) {
    constexpr std::uint64_t epoch = storedEpoch;
    constexpr auto latest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const Decimal decimal = Decimal::fromNumber(number);
    const auto nanoseconds = static_cast<std::int32_t>(decimal.billionths);
    if (!decimal.isNegative) {
        if (decimal.whole > latest - epoch)
            return {std::numeric_limits<std::int64_t>::max(), nanosecondsPerSecond - 1};
        return {static_cast<std::int64_t>(decimal.whole + epoch), nanoseconds};
    }
    constexpr std::uint64_t farthest = latest + 1 + epoch;
    if (decimal.whole >= farthest) return {std::numeric_limits<std::int64_t>::min(), 0};
    const std::uint64_t below = decimal.whole + (nanoseconds > 0 ? 1 : 0);
    return {static_cast<std::int64_t>(epoch - below),
            nanoseconds > 0 ? nanosecondsPerSecond - nanoseconds : 0};
}

// Each false when the member is missing or of another type.
bool readMember(const Json& document, std::string_view key, std::string& field) {
    const Json* const member = document.find(key);
    const std::string* const value = member == nullptr ? nullptr : member->ifString();
    if (value == nullptr) return false;
    field = *value;
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
    const std::optional<std::int64_t> value =
        number == nullptr ? std::nullopt : integerFromNumber(number->text);
    if (!value) return false;
    field = *value;
    return true;
}

bool readMember(const Json& document, std::string_view key, std::optional<Date>& field) {
    const Json* const member = document.find(key);
    if (member == nullptr || member->isNull()) return true;
    const Json::Number* const number = member->ifNumber();
    if (number == nullptr) return false;
    field = dateFromNumber(number->text);
    return true;
}

} // namespace

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
    // Such text has no JSON, and what is stored is better than nothing.
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
    if (quietUntil) add("quietUntil", Json::Number{numberFromDate(*quietUntil)});
    document += '}';
    defaults.setData(key, document);
}

} // namespace corvane
