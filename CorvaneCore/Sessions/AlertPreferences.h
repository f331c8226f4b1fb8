#pragma once

#include "Agents/EventKind.h"
#include "Support/Date.h"
#include "Support/UserDefaults.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The user's choices about alerts. A plain value.
struct AlertPreferences {
    static constexpr std::string_view defaultWaitingSound = "Glass";
    static constexpr std::string_view defaultDoneSound = "Tink";

    /// In display order.
    static constexpr std::array<std::string_view, 8> soundChoices{"Glass", "Ping", "Hero", "Submarine",
                                                                  "Purr",  "Pop",  "Tink", "Funk"};
    /// Minutes, in display order; 0 is "no reminders".
    static constexpr std::array<std::int64_t, 4> reminderChoices{0, 1, 2, 5};

    std::string waitingSound{defaultWaitingSound}; ///< played when an agent waits
    std::string doneSound{defaultDoneSound};       ///< played when an agent finishes
    bool soundsOn = true;                          ///< play sounds at all
    bool alertWhenDone = true;                     ///< alert when an agent finishes
    std::int64_t reminderMinutes = 2;              ///< minutes between reminders; 0 for none
    std::optional<Date> quietUntil;                ///< no alerts until this moment; see `storable`

    bool operator==(const AlertPreferences&) const = default;

    /// The moment nearest to `date` that survives storing unchanged, at most a tenth of a microsecond away: a
    /// date is stored as a double of seconds.
    [[nodiscard]] static Date storable(Date date);

    /// Whether alerts are silenced: `now` is strictly before `quietUntil`.
    [[nodiscard]] bool isQuiet(Date now) const;

    /// The time between reminders; zero when there are none.
    [[nodiscard]] Seconds reminderInterval() const;

    /// The sound for an event of this kind, if it has one and sounds are on.
    [[nodiscard]] std::optional<std::string> sound(EventKind kind) const;

    /// The preferences stored under `key`; all defaults when there are none or they cannot be read.
    [[nodiscard]] static AlertPreferences load(const UserDefaults& defaults, std::string_view key);

    /// Stores the preferences under `key` as one JSON object. A failure is not reported.
    void save(UserDefaults& defaults, std::string_view key) const;
};

} // namespace corvane
