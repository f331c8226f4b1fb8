#pragma once

#include "Agents/AgentKind.h"
#include "Agents/EventKind.h"
#include "Support/Date.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class EventPayload;
class InboxReader;

/// One thing that an agent reported, as the hook program wrote it into an event file. A plain value.
///
/// An event file is UTF-8 text whose lines end in a line feed: the magic line, header lines "key=value", the
/// separator line, then the agent's own JSON object.
struct AgentEvent {
    static constexpr std::string_view magic = "corvane-event 1";
    static constexpr std::string_view separator = "---";

    AgentKind source = AgentKind::claude;
    EventKind kind = EventKind::running;
    std::string sessionID;        ///< the agent's session identifier; `cwd` where the payload has none
    std::string cwd;              ///< the agent's working directory; may be empty
    std::string message;          ///< the agent's own text, unchanged; may be empty
    std::string terminalBundleID; ///< the terminal application's bundle identifier; may be empty
    std::string terminalProgram;  ///< the terminal program's name; may be empty
    Date date;                    ///< when it happened: the event file's modification date

    bool operator==(const AgentEvent&) const = default;

    /// The short project name that alerts show: the last component of `cwd`, or all of `cwd` if it has none.
    [[nodiscard]] std::string repoName() const;

    /// The most bytes of a folder or an identifier that are worth keeping. No system has a longer path.
    static constexpr std::size_t longestName = 4096;

    /// Truncates `cwd`, the session identifier and the terminal's names to little more than `longestName`
    /// bytes. A truncated folder keeps its end, so that `repoName` stays the same unless it is itself too
    /// long, but is no longer an absolute path. Session identifiers that differ still do.
    void cutNames();

    /// Parses the whole text of an event file. Returns none for anything malformed (a wrong magic line, no
    /// separator, a source that is none of `agents`, text that is not UTF-8, a payload that is not one strict
    /// JSON object nested at most 1,024 deep) and for an event that needs no report. Pure; never throws for
    /// bad input; takes time linear in the size of `text`.
    static std::optional<AgentEvent> parse(std::string_view text, Date fileDate,
                                           AgentKinds agents = AgentKind::allCases);

  private:
    friend class InboxReader;

    /// The same without a copy of `text`, for many files in a row: `EventPayload::padding` bytes after `text`
    /// must be readable, and the working memory of `payload` is reused.
    static std::optional<AgentEvent> parse(std::string_view text, Date fileDate, EventPayload& payload,
                                           AgentKinds agents = AgentKind::allCases);
};

} // namespace corvane
