#pragma once

#include "Agents/EventKind.h"
#include "Support/Date.h"
#include "Support/Words.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

class EventPayload;
struct CorvanePaths;

/// What one payload of an agent reports.
struct AgentReport {
    EventKind kind;
    std::optional<std::string> sessionID; ///< the agent's own session identifier, if the payload has one
    std::string cwd;                      ///< the agent's working directory; may be empty
    std::string message;                  ///< the agent's own text, unchanged; may be empty
};

/// The default value of every member that a descriptor must set. Deliberately never defined: descriptors are
/// `constinit`, and a call of this is not a constant expression, so a descriptor that omits a member does not
/// compile.
template <class T>
T required();

/// Everything that differs between agents, and the only place for it: code that depends on the agent queries
/// its descriptor. Descriptors are `constinit` constants, compared by identity.
struct AgentDescriptor {
    /// The name in files and identifiers, the hook program's first argument, and the name of the agent's
    /// executable, by which its process is found. Lower case, without a colon.
    std::string_view rawValue = required<std::string_view>();
    /// The name in alerts and lists: a proper name, the same in every language.
    std::string_view displayName = required<std::string_view>();
    /// One capital letter for the badge.
    std::string_view badge = required<std::string_view>();

    /// The top-level members of a payload that `report` reads, strings and arrays alike.
    std::span<const std::string_view> payloadNames = required<std::span<const std::string_view>>();
    /// What a payload reports; none for an event that needs no report.
    std::optional<AgentReport> (&report)(const EventPayload& payload);
    /// A session that worked for less than this finishes without an alert. None for an agent that reports
    /// only when it finishes: how long it worked is unknown, so every finish alerts.
    std::optional<Seconds> minWorkForDoneAlert = required<std::optional<Seconds>>();

    /// The configuration file, relative to the user's home.
    std::string_view configFile = required<std::string_view>();
    /// Whether the configuration file can hold this path of the hook program.
    bool (&canHoldPath)(std::string_view path);
    /// Returns the file's new content, which calls the hook program of `paths`; `current` itself if nothing
    /// has to change. `current` is none when there is no file. Throws ConfigEditError.
    std::string (&install)(std::optional<std::string_view> current, const CorvanePaths& paths);
    /// Returns the file's content without the application's own entries; `current` itself if it has none.
    /// Throws ConfigEditError.
    std::string (&uninstall)(std::string_view current);
    /// Whether the file calls the hook program wherever it should. Never throws, whatever the file holds.
    bool (&isInstalled)(std::string_view current);

    /// The title of the agent's card.
    Phrase cardTitle = required<Phrase>();
    /// What connecting does; "%1" is the configuration file.
    Phrase cardOffer = required<Phrase>();
    /// What triggers alerts once the agent is connected; "%1" is the configuration file.
    Phrase cardSummary = required<Phrase>();
    /// States whether agents that already run when it is connected report too.
    Phrase cardRunningAgents = required<Phrase>();
};

} // namespace corvane
