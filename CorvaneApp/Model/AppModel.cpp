#include "Model/AppModel.h"

#include "Agents/ConfigEditError.h"
#include "Model/Banners.h"
#include "Platform/Applications.h"
#include "Platform/LoginItem.h"
#include "Platform/Scheduler.h"
#include "Platform/Sounds.h"
#include "Sessions/AlertText.h"
#include "Sessions/TerminalApp.h"
#include "Style/Translations.h"
#include "Support/Files.h"
#include "Support/Memory.h"

#include <QPointer>
#include <QString>

#include <algorithm>
#include <chrono>
#include <exception>
#include <set>
#include <utility>

namespace corvane {

namespace {

constexpr std::chrono::seconds loopInterval{1};
constexpr Seconds quietDuration{3600};
constexpr int ticksPerPruning = 60;
constexpr const char* testSession = "test";

// The error's message for the user.
std::string localizedDescription(const std::exception& error) {
    if (const auto* const edit = dynamic_cast<const ConfigEditError*>(&error))
        return edit->description(translations::words);
    if (const auto* const file = dynamic_cast<const files::FileError*>(&error))
        return file->description(translations::words);
    return error.what();
}

} // namespace

AppModel::AppModel(AgentConnector connector, UserDefaults& defaults, Banners& banners,
                   const PlatformServices& services, AgentKinds agents)
    : agents_(agents)
    , connector_(std::move(connector))
    , inbox_(connector_.paths().events(), agents)
    , defaults_(defaults)
    , services_(services)
    , banners_(banners)
    , waitWatch_(services.agentProcesses)
    , now_(services.clock())
    , prefs_(AlertPreferences::load(defaults, preferencesKey))
    , hasCompletedOnboarding_(defaults.boolean(onboardingKey)) {
    const QPointer self(this);
    banners_.onJump = [self](const AgentSession& session) {
        if (self) self->jump(session);
    };
    banners_.onSnooze = [self](const AgentSession& session) {
        if (self) self->snooze(session);
    };
    banners_.isTerminalMissing = [self](const AgentSession& session) {
        return self && self->isTerminalMissing(session.id());
    };
    refreshConnections();
    repairHook();
    start();
}

AppModel::~AppModel() = default;

void AppModel::start() {
    scheduleTick(std::chrono::milliseconds(0));
}

void AppModel::repairHook() {
    if (std::ranges::none_of(agents_, [this](AgentKind agent) { return connected_.at(agent); })) return;
    try {
        connector_.repairHook();
    } catch (const std::exception& error) {
        connectError_ = filled(tr("Couldn't repair the hook that connected agents call: %1").toStdString(),
                               {localizedDescription(error)});
    }
}

void AppModel::scheduleTick(std::chrono::milliseconds delay) {
    services_.scheduler.after(delay, [self = QPointer(this)] {
        if (self) self->tick();
    });
}

void AppModel::tick() {
    now_ = services_.clock();
    inbox_.begin();
    readInbox();
}

void AppModel::readInbox() {
    const std::size_t before = arrived_.size();
    const bool hasMore = inbox_.step(arrived_);
    for (std::size_t i = before; i < arrived_.size(); ++i) {
        arrived_[i].message = AlertText::kept(std::move(arrived_[i].message));
        arrived_[i].cutNames();
    }
    if (!hasMore) {
        endPass();
        return;
    }
    services_.scheduler.after(std::chrono::milliseconds(0), [self = QPointer(this)] {
        if (self) self->readInbox();
    });
}

void AppModel::endPass() {
    const std::vector<AgentEvent> events = std::exchange(arrived_, {});
    recheckRemoved(events);
    banners_.update([&] {
        for (const AgentEvent& event : events) {
            if (removed_.contains(event.source)) continue;
            if (const std::optional<BoardEffect> effect = board_.apply(event)) perform(*effect);
        }
        endDeadSessions();
        for (const AgentSession& session : board_.dueReminders(now_, prefs_.reminderInterval()))
            perform(BoardEffect::showWaiting(session));
    });
    playSounds();
    if (inbox_.wasLarge()) memory::giveBack();
    std::erase_if(missingTerminals_, [this](const std::string& id) { return !isOnBoard(id); });
    ++ticks_;
    if (ticks_ % ticksPerPruning == 0) prune();
    const QPointer self(this);
    Q_EMIT changed();
    // A receiver may have destroyed the model.
    if (self) scheduleTick(loopInterval);
}

void AppModel::recheckRemoved(const std::vector<AgentEvent>& events) {
    std::unordered_set<AgentKind> reporting;
    for (const AgentEvent& event : events) {
        if (removed_.contains(event.source)) reporting.insert(event.source);
    }
    for (const AgentKind agent : reporting)
        checkConnection(agent);
}

void AppModel::perform(const BoardEffect& effect) {
    if (const auto* const dismissal = effect.ifDismiss()) {
        banners_.dismiss(dismissal->sessionID);
        waitingAlerts_.erase(dismissal->sessionID);
        return;
    }
    if (prefs_.isQuiet(now_)) return;
    if (const auto* const waiting = effect.ifShowWaiting()) {
        banners_.showWaiting(waiting->session);
        waitingAlerts_.insert(waiting->session.id());
    } else if (const auto* const done = effect.ifShowDone(); done != nullptr && prefs_.alertWhenDone) {
        banners_.showDone(done->session);
        hasDoneAlert_ = true;
    }
}

void AppModel::playSounds() {
    // The sound is the same for both kinds of waiting.
    const std::optional<std::string> waiting =
        std::exchange(waitingAlerts_, {}).empty() ? std::nullopt : prefs_.sound(EventKind::needsPermission);
    const std::optional<std::string> done =
        std::exchange(hasDoneAlert_, false) ? prefs_.sound(EventKind::finished) : std::nullopt;
    if (waiting) services_.sounds.play(*waiting);
    if (done && done != waiting) services_.sounds.play(*done);
}

void AppModel::prune() {
    std::set<std::string> forgotten;
    for (const AgentSession& session : board_.sessions())
        forgotten.insert(session.id());
    board_.prune(now_);
    for (const AgentSession& session : board_.sessions())
        forgotten.erase(session.id());
    // Nothing else would ever remove their banners.
    for (const std::string& id : forgotten)
        banners_.dismiss(id);
}

void AppModel::endDeadSessions() {
    for (const AgentSession& session : waitWatch_.ended(board_.sessions(), now_))
        end(session);
}

void AppModel::endSessions(AgentKind agent) {
    const std::vector<AgentSession> before = board_.sessions();
    for (const AgentSession& session : before) {
        if (session.agent == agent) end(session);
    }
}

void AppModel::end(const AgentSession& session) {
    AgentEvent event;
    event.source = session.agent;
    event.kind = EventKind::ended;
    event.sessionID = session.sessionID;
    event.date = now_;
    if (const std::optional<BoardEffect> effect = board_.apply(event)) perform(*effect);
}

void AppModel::playSound(EventKind kind) {
    if (const std::optional<std::string> name = prefs_.sound(kind)) services_.sounds.play(*name);
}

void AppModel::jump(const AgentSession& session) {
    banners_.dismiss(session.id());
    services_.applications.activate({.bundleID = TerminalApp::bundleID(session),
                                     .program = session.terminalProgram,
                                     .agent = std::string(session.agent.rawValue()),
                                     .directory = session.cwd},
                                    [self = QPointer(this), session](bool isFound) {
                                        if (!self) return;
                                        self->rememberTerminal(session.id(), isFound);
                                        // The test alert has no terminal, and its folder does not exist.
                                        if (self && !isFound && session.sessionID != testSession)
                                            self->banners_.showTerminalMissing(session);
                                    });
}

bool AppModel::isTerminalMissing(std::string_view id) const {
    return missingTerminals_.contains(id);
}

bool AppModel::isOnBoard(std::string_view id) const {
    return std::ranges::any_of(board_.sessions(),
                               [id](const AgentSession& session) { return session.id() == id; });
}

void AppModel::rememberTerminal(const std::string& id, bool isFound) {
    const bool hasChanged =
        isFound ? missingTerminals_.erase(id) != 0 : isOnBoard(id) && missingTerminals_.insert(id).second;
    if (hasChanged) Q_EMIT changed();
}

void AppModel::setPrefs(const AlertPreferences& prefs) {
    prefs_ = prefs;
    prefs_.save(defaults_, preferencesKey);
    Q_EMIT changed();
}

void AppModel::setHasCompletedOnboarding(bool completed) {
    hasCompletedOnboarding_ = completed;
    defaults_.setBoolean(onboardingKey, completed);
    Q_EMIT changed();
}

void AppModel::snooze(const AgentSession& session) {
    board_.snooze(session.id(), now_ + snoozeDuration);
    banners_.dismiss(session.id());
    Q_EMIT changed();
}

void AppModel::quietForAnHour() {
    AlertPreferences prefs = prefs_;
    prefs.quietUntil = AlertPreferences::storable(now_ + quietDuration);
    setPrefs(prefs);
}

void AppModel::resumeAlerts() {
    AlertPreferences prefs = prefs_;
    prefs.quietUntil = std::nullopt;
    setPrefs(prefs);
}

void AppModel::sendTestAlert() {
    AgentSession session;
    session.agent = AgentKind::claude;
    session.sessionID = testSession;
    session.cwd = "/Users/you/my-project";
    session.message = "Claude needs your permission to use Bash";
    session.status = SessionStatus::waiting(EventKind::needsPermission, now_);
    session.lastEvent = now_;
    session.lastAlerted = now_;
    banners_.showWaiting(session);
    playSound(EventKind::needsPermission);
}

void AppModel::connectAgent(AgentKind agent) {
    try {
        lastBackup_ = connector_.connect(agent, services_.clock());
        lastConnected_ = agent;
        connectError_ = std::nullopt;
    } catch (const ConfigEditError& error) {
        switch (error.kind()) {
        case ConfigEditError::Case::unreadable:
            connectError_ =
                filled(tr("%1 — %2. Nothing was changed.").toStdString(),
                       {connector_.configFile(agent).string(), error.detail(translations::words)});
            break;
        case ConfigEditError::Case::taken:
            connectError_ = error.description(translations::words);
            break;
        }
    } catch (const std::exception& error) {
        connectError_ = filled(tr("Couldn't connect %1: %2").toStdString(),
                               {agent.displayName(), localizedDescription(error)});
    }
    refreshConnections();
}

void AppModel::disconnectAgent(AgentKind agent) {
    try {
        connector_.disconnect(agent);
        connectError_ = std::nullopt;
        removed_.insert(agent);
        endSessions(agent);
    } catch (const std::exception& error) {
        connectError_ = filled(tr("Couldn't remove Corvane from %1: %2").toStdString(),
                               {agent.displayName(), localizedDescription(error)});
    }
    refreshConnections();
}

void AppModel::setOpensAtLogin(bool on) {
    try {
        services_.loginItem.setEnabled(on);
        connectError_ = std::nullopt;
    } catch (const std::exception& error) {
        connectError_ =
            filled(tr("Couldn't change “Open at login”: %1").toStdString(), {localizedDescription(error)});
    }
    Q_EMIT changed();
}

bool AppModel::opensAtLogin() const {
    return services_.loginItem.isEnabled();
}

void AppModel::playSample(const std::string& sound) {
    services_.sounds.play(sound);
}

bool AppModel::isAnyAgentConnected() const {
    return std::any_of(connected_.begin(), connected_.end(), [](const auto& agent) { return agent.second; });
}

std::vector<AgentSession> AppModel::listedSessions() const {
    return isAnyAgentConnected() ? board_.sorted() : std::vector<AgentSession>();
}

int AppModel::listedWaitingCount() const {
    return isAnyAgentConnected() ? static_cast<int>(board_.waitingCount()) : 0;
}

std::optional<std::filesystem::path> AppModel::backupInUse() const {
    return lastConnected_ && connected_.at(*lastConnected_) ? lastBackup_ : std::nullopt;
}

std::optional<Date> AppModel::quietUntil() const {
    return prefs_.isQuiet(now_) ? prefs_.quietUntil : std::nullopt;
}

void AppModel::checkConnection(AgentKind agent) {
    connected_[agent] = connector_.isConnected(agent);
    if (connected_[agent]) removed_.erase(agent);
}

void AppModel::refreshConnections() {
    for (const AgentKind agent : agents_)
        checkConnection(agent);
    Q_EMIT changed();
}

} // namespace corvane
