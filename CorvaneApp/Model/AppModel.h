#pragma once

#include "Connection/AgentConnector.h"
#include "Intake/InboxReader.h"
#include "Model/WaitWatch.h"
#include "Platform/Platform.h"
#include "Sessions/AlertPreferences.h"
#include "Sessions/SessionBoard.h"
#include "Support/UserDefaults.h"

#include <QObject>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

class Banners;

/// Owns the application's state: turns event files into alerts once a second and carries out what the user
/// asks for. Views read it, call it, and refresh on `changed`; nothing else changes the board or the
/// preferences.
///
/// Main thread only. Accesses the clock, the stored settings and the system only through the objects passed
/// to it.
class AppModel : public QObject {
    Q_OBJECT

  public:
    static constexpr std::string_view preferencesKey = "alertPreferences";
    static constexpr std::string_view onboardingKey = "hasCompletedOnboarding";
    /// How long `snooze` holds reminders back.
    static constexpr Seconds snoozeDuration{300};

    /// Loads the stored settings, checks which agents are connected, repairs the hook that these call and
    /// starts the polling loop, whose first pass runs as soon as the event loop does. Sets the callbacks of
    /// `banners`. `defaults`, `banners`, what `services` refers to and `agents` must outlive the model.
    AppModel(AgentConnector connector, UserDefaults& defaults, Banners& banners,
             const PlatformServices& services, AgentKinds agents = AgentKind::allCases);
    ~AppModel() override;

    /// The agents that can be connected and whose events are read.
    [[nodiscard]] AgentKinds agents() const { return agents_; }
    [[nodiscard]] const SessionBoard& board() const { return board_; }
    /// Whether each agent's configuration called the hook when last checked.
    [[nodiscard]] const std::unordered_map<AgentKind, bool>& connected() const { return connected_; }
    [[nodiscard]] bool isAnyAgentConnected() const;
    /// What the panel, the menu and the icon show: the board's sessions in its order, and how many of them
    /// wait. None while no agent is connected, since all three lead to connecting one then.
    [[nodiscard]] std::vector<AgentSession> listedSessions() const;
    [[nodiscard]] int listedWaitingCount() const;
    /// The backup that the last successful connect created, if it needed one.
    [[nodiscard]] const std::optional<std::filesystem::path>& lastBackup() const { return lastBackup_; }
    /// That backup while the agent whose configuration it holds is connected.
    [[nodiscard]] std::optional<std::filesystem::path> backupInUse() const;
    /// The error of the last connect, disconnect or change of the login item, or of repairing the hook at the
    /// start, in words for the user; none after a success.
    [[nodiscard]] const std::optional<std::string>& connectError() const { return connectError_; }
    /// The time of the last pass of the loop; everything that depends on the time uses it.
    [[nodiscard]] Date now() const { return now_; }
    [[nodiscard]] const AlertPreferences& prefs() const { return prefs_; }
    /// When the current quiet time ends; none while alerts are not silenced.
    [[nodiscard]] std::optional<Date> quietUntil() const;
    [[nodiscard]] bool hasCompletedOnboarding() const { return hasCompletedOnboarding_; }
    /// Whether this run has already decided if the main window is shown at launch.
    [[nodiscard]] bool launchWindowHandled() const { return launchWindowHandled_; }
    void setLaunchWindowHandled(bool handled) { launchWindowHandled_ = handled; }
    /// The number of completed passes.
    [[nodiscard]] std::int64_t ticks() const { return ticks_; }
    [[nodiscard]] const AgentConnector& connector() const { return connector_; }

    /// Every change is stored at once.
    void setPrefs(const AlertPreferences& prefs);
    void setHasCompletedOnboarding(bool completed);

    /// Snoozes the session's reminders for five minutes and removes its banner.
    void snooze(const AgentSession& session);

    /// Removes the session's banner and brings its terminal to the front; if none is found, shows a notice.
    void jump(const AgentSession& session);
    /// Whether the last `jump` to this session found no terminal.
    [[nodiscard]] bool isTerminalMissing(std::string_view id) const;

    /// Installs the hook and the agent's configuration entry, or removes the entry and ends the agent's
    /// sessions. A failure is reported by `connectError`.
    void connectAgent(AgentKind agent);
    void disconnectAgent(AgentKind agent);

    /// Sets whether the application starts at login. A failure is reported by `connectError`.
    void setOpensAtLogin(bool on);
    /// Reads the actual state back from the system.
    [[nodiscard]] bool opensAtLogin() const;

    /// Silences alerts for an hour from the last pass.
    void quietForAnHour();
    /// Ends quiet time, if it is on.
    void resumeAlerts();

    /// Shows an alert for a sample session, even in quiet time.
    void sendTestAlert();

    /// Plays a sound for a user who is choosing one, even in quiet time.
    void playSample(const std::string& sound);

    /// Reads from the agents' configuration which of them are connected now; they and other programs change
    /// it too.
    void refreshConnections();

  Q_SIGNALS:
    /// Emitted when any of the above values may have changed.
    void changed();

  private:
    void start();
    /// Rewrites the hook if an agent is connected: it may have been deleted with the support folder.
    void repairHook();
    void scheduleTick(std::chrono::milliseconds delay);
    /// Begins a pass of the loop.
    void tick();
    /// Reads a part of the inbox. Ends the pass when all is read; otherwise continues in the event loop's
    /// next turn.
    void readInbox();
    /// Applies the events of the pass, all at once, and schedules the next pass.
    void endPass();
    /// Checks the removed agents that have reported something: another program, such as one that restores
    /// the user's settings, may have put the entries back.
    void recheckRemoved(const std::vector<AgentEvent>& events);
    void checkConnection(AgentKind agent);
    void perform(const BoardEffect& effect);
    /// Plays the sounds of the pass, each once.
    void playSounds();
    void playSound(EventKind kind);
    void prune();
    /// Ends the sessions whose agent has exited while it waited.
    void endDeadSessions();
    /// Ends all sessions of an agent that no longer reports.
    void endSessions(AgentKind agent);
    void end(const AgentSession& session);
    [[nodiscard]] bool isOnBoard(std::string_view id) const;
    void rememberTerminal(const std::string& id, bool isFound);

    AgentKinds agents_;
    AgentConnector connector_;
    InboxReader inbox_;
    std::vector<AgentEvent> arrived_; // in the current pass
    UserDefaults& defaults_;
    PlatformServices services_;
    Banners& banners_;

    SessionBoard board_;
    WaitWatch waitWatch_;
    std::set<std::string, std::less<>> missingTerminals_; ///< sessions by `id`; none that left the board
    std::unordered_map<AgentKind, bool> connected_;
    std::unordered_set<AgentKind> removed_; // by the user, in this run, and not connected since
    std::optional<std::filesystem::path> lastBackup_;
    std::optional<AgentKind> lastConnected_; // the agent that `lastBackup_` belongs to
    std::optional<std::string> connectError_;
    Date now_;
    AlertPreferences prefs_;
    bool hasCompletedOnboarding_ = false;
    bool launchWindowHandled_ = false;
    std::int64_t ticks_ = 0;
    /// The alerts of the current pass whose sounds are pending: the sessions whose waiting banner it showed
    /// and did not remove again, and whether it showed a done banner.
    std::set<std::string> waitingAlerts_;
    bool hasDoneAlert_ = false;
};

} // namespace corvane
