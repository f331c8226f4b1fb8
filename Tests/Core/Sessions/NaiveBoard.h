#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

/// A second implementation of the session board's rules, as simple as possible and sharing nothing with the
/// real one: names instead of enumerations, whole nanoseconds instead of dates. The model test compares the
/// two.

using Nanoseconds = std::int64_t;
constexpr Nanoseconds second = 1'000'000'000;

struct NaiveEvent {
    std::string agent;
    std::string sessionID;
    std::string kind;
    std::string cwd;
    std::string message;
    std::string bundle;
    std::string program;
    Nanoseconds date = 0;
};

struct NaiveSession {
    std::string agent;
    std::string sessionID;
    std::string cwd;
    std::string message;
    std::string bundle;
    std::string program;
    std::string status; ///< "running", "done" or the kind of prompt that it waits for
    Nanoseconds lastEvent = 0;
    std::optional<Nanoseconds> waitingSince; ///< only while it waits
    std::optional<Nanoseconds> doneAt;       ///< only while it is done
    std::optional<Nanoseconds> lastAlerted;
    std::optional<Nanoseconds> runningSince;
    std::optional<Nanoseconds> snoozedUntil;

    bool operator==(const NaiveSession&) const = default;
    [[nodiscard]] bool waits() const { return status == "needsPermission" || status == "needsInput"; }
};

struct NaiveEffect {
    std::string what; ///< "showWaiting", "showDone" or "dismiss"
    std::string key;
    std::optional<NaiveSession> session; ///< what is shown
    bool operator==(const NaiveEffect&) const = default;
};

struct NaiveBoard {
    Nanoseconds minWork = 20 * second;
    Nanoseconds doneRetention = 1800 * second;
    Nanoseconds staleAfter = 43'200 * second;

    std::vector<std::string> order; ///< keys, the oldest session first
    std::map<std::string, NaiveSession> sessions;

    std::optional<NaiveEffect> apply(const NaiveEvent& event);
    std::vector<NaiveSession> dueReminders(Nanoseconds now, Nanoseconds interval);
    void snooze(const std::string& key, Nanoseconds until);
    void prune(Nanoseconds now);
    [[nodiscard]] std::vector<NaiveSession> list() const;
    [[nodiscard]] std::vector<NaiveSession> sorted() const;
    [[nodiscard]] std::size_t waitingCount() const;

  private:
    void remove(const std::string& key);
};

} // namespace corvane::test
