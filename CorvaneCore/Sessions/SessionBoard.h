#pragma once

#include "Intake/AgentEvent.h"
#include "Support/Date.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace corvane {

/// What a session is doing. A plain value: one of `waiting`, `done`, `running`.
class SessionStatus {
  public:
    /// The agent is blocked on the user.
    struct Waiting {
        EventKind reason; ///< `needsPermission` or `needsInput`
        Date since;       ///< when the current wait began
        bool operator==(const Waiting&) const = default;
    };
    /// The agent finished its turn.
    struct Done {
        Date at;
        bool operator==(const Done&) const = default;
    };

    static SessionStatus waiting(EventKind reason, Date since) {
        return SessionStatus(Waiting{reason, since});
    }
    static SessionStatus done(Date at) { return SessionStatus(Done{at}); }
    static SessionStatus running() { return SessionStatus(Running{}); }

    /// The case's payload, or null in any other case. Lives as long as the status.
    [[nodiscard]] const Waiting* ifWaiting() const { return std::get_if<Waiting>(&value_); }
    [[nodiscard]] const Done* ifDone() const { return std::get_if<Done>(&value_); }

    [[nodiscard]] bool isWaiting() const { return std::holds_alternative<Waiting>(value_); }
    [[nodiscard]] bool isDone() const { return std::holds_alternative<Done>(value_); }
    [[nodiscard]] bool isRunning() const { return std::holds_alternative<Running>(value_); }

    bool operator==(const SessionStatus&) const = default;

  private:
    struct Running {
        bool operator==(const Running&) const = default;
    };
    using Value = std::variant<Waiting, Done, Running>;

    explicit SessionStatus(Value value)
        : value_(value) {}

    Value value_;
};

/// One agent session that the board tracks. A plain value.
struct AgentSession {
    AgentKind agent = AgentKind::claude;
    std::string sessionID; ///< the agent's own session identifier
    std::string cwd;       ///< working directory last reported
    std::string message;   ///< text of the last prompt or result
    std::string terminalBundleID;
    std::string terminalProgram;
    SessionStatus status = SessionStatus::running();
    Date lastEvent;                   ///< time of the last event applied
    std::optional<Date> lastAlerted;  ///< when the user was last alerted for the current wait
    std::optional<Date> runningSince; ///< when the current stretch of work began
    std::optional<Date> snoozedUntil; ///< no reminders until then

    bool operator==(const AgentSession&) const = default;

    /// The agent's raw value, a colon and the session identifier: the session's name everywhere.
    [[nodiscard]] std::string id() const;
    [[nodiscard]] bool isWaiting() const { return status.isWaiting(); }
    /// The short project name that alerts show: the last component of `cwd`, or all of `cwd` if it has none.
    [[nodiscard]] std::string repoName() const;
};

/// What the application must do after an event. A plain value: one of `showWaiting`, `showDone`, `dismiss`.
class BoardEffect {
  public:
    /// Show or refresh the waiting banner of this session, and alert.
    struct ShowWaiting {
        AgentSession session;
        bool operator==(const ShowWaiting&) const = default;
    };
    /// Show the done banner of this session.
    struct ShowDone {
        AgentSession session;
        bool operator==(const ShowDone&) const = default;
    };
    /// Remove the banner of the session with this `id` (the agent's prefix included).
    struct Dismiss {
        std::string sessionID;
        bool operator==(const Dismiss&) const = default;
    };

    static BoardEffect showWaiting(AgentSession session) {
        return BoardEffect(ShowWaiting{std::move(session)});
    }
    static BoardEffect showDone(AgentSession session) { return BoardEffect(ShowDone{std::move(session)}); }
    static BoardEffect dismiss(std::string sessionID) { return BoardEffect(Dismiss{std::move(sessionID)}); }

    /// The case's payload, or null in any other case. Lives as long as the effect.
    [[nodiscard]] const ShowWaiting* ifShowWaiting() const { return std::get_if<ShowWaiting>(&value_); }
    [[nodiscard]] const ShowDone* ifShowDone() const { return std::get_if<ShowDone>(&value_); }
    [[nodiscard]] const Dismiss* ifDismiss() const { return std::get_if<Dismiss>(&value_); }

    bool operator==(const BoardEffect&) const = default;

  private:
    using Value = std::variant<ShowWaiting, ShowDone, Dismiss>;

    explicit BoardEffect(Value value)
        : value_(std::move(value)) {}

    Value value_;
};

/// The state machine of agent sessions: folds events into sessions and reports what the user should see.
///
/// Pure logic on a short list; reads no clock and owns no timer. Events are expected in the order in which
/// they happened; any dates are accepted. A plain value; not thread-safe.
class SessionBoard {
  public:
    static constexpr Seconds doneRetention{1800}; ///< a finished session older than this is pruned
    static constexpr Seconds staleAfter{43'200};  ///< any session silent for longer than this is pruned

    /// In the order of their first events.
    [[nodiscard]] const std::vector<AgentSession>& sessions() const { return sessions_; }

    /// Folds one event into its session. Returns what the user should now see, if anything changes; the
    /// session in the effect is the updated one.
    std::optional<BoardEffect> apply(const AgentEvent& event);

    /// Returns the waiting sessions whose reminder is due or whose snooze has expired at `now`, in list
    /// order, and marks them as alerted. An `interval` of zero or less turns reminders off; an expired snooze
    /// is still due.
    [[nodiscard]] std::vector<AgentSession> dueReminders(Date now, Seconds interval);

    /// Suppresses the session's reminders until `until`. An unknown `id` is ignored.
    void snooze(std::string_view id, Date until);

    /// Removes sessions that finished too long ago (`doneRetention`) or fell silent (`staleAfter`).
    void prune(Date now);

    /// A copy for display: waiting, then running, then done; within a group the latest event first.
    [[nodiscard]] std::vector<AgentSession> sorted() const;

    [[nodiscard]] std::size_t waitingCount() const;

    bool operator==(const SessionBoard&) const = default;

  private:
    /// The event's session, appended to the list if new, with its directory, terminal and time of the last
    /// event updated. Valid until the list changes.
    AgentSession& upsert(const AgentEvent& event);

    std::vector<AgentSession> sessions_;
};

} // namespace corvane
