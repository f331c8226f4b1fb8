#include "MenuBar/TrayMenu.h"

#include "Controls/Elision.h"
#include "Controls/ForeignText.h"
#include "MenuBar/StatusDot.h"
#include "Model/AppModel.h"
#include "Sessions/AlertText.h"
#include "Style/CorvaneStyle.h"
#include "Style/TextScale.h"
#include "Style/Times.h"
#include "Style/Tokens.h"
#include "Style/Translations.h"
#include "Style/Utf8.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

// Hosts on the session bus report that they open the menu; not all of them report that they have closed it.
// The model changes once a second, and occasionally in between.
constexpr int longestOpening = 60;
constexpr Scaled menuWidth{TrayMenu::largestWidth};
constexpr const char* shownDot = "shownDot"; // a property of the entries

/// The entry's text, with the name cut to fit the widest menu.
QString entry(const AgentSession& session, Date now, const QFontMetricsF& metrics) {
    const QString separator = QStringLiteral(" · ");
    QString own = fromUtf8(session.agent.displayName()) + separator +
                  fromUtf8(AlertText::statusLine(session, now, translations::words));
    const QString whole = foreign::line(fromUtf8(session.repoName())).simplified();
    if (whole.isEmpty()) return own;
    const double room = CorvaneStyle::menuTextWidth(menuWidth, CorvaneStyle::MenuIcon::shown) -
                        metrics.horizontalAdvance(separator + own);
    const auto measure = [&metrics](std::string_view text) {
        return metrics.horizontalAdvance(fromUtf8(text));
    };
    const QString name = fromUtf8(text::elidingMiddle(whole.toStdString(), room, measure));
    // A single ampersand would mark a mnemonic.
    return QString(foreign::isolated(name) + separator + own).replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// Identifies the picture of an entry's dot.
int dotNumber(const SessionStatus& status, Look look) {
    constexpr int looks = 4;
    const int kind = status.isWaiting() ? 0 : status.isDone() ? 1 : 2;
    return kind * looks + (look.scheme == ColorScheme::dark ? 2 : 0) + (look.isHighContrast() ? 1 : 0);
}

void showDot(QAction& action, const SessionStatus& status, Look look) {
    const int number = dotNumber(status, look);
    const QVariant before = action.property(shownDot);
    // A new icon is sent to the tray's host, whether it looks different or not.
    if (before.isValid() && before.toInt() == number) return;
    action.setProperty(shownDot, number);
    action.setIconVisibleInMenu(true);
    action.setIcon(statusdot::icon(status, look));
}

/// When the session's status began; as of then, its entry shows no elapsed time.
Date statusBegin(const AgentSession& session) {
    if (const SessionStatus::Waiting* const waiting = session.status.ifWaiting()) return waiting->since;
    if (const SessionStatus::Done* const done = session.status.ifDone()) return done->at;
    return session.lastEvent;
}

} // namespace

TrayMenu::TrayMenu(AppModel& model, const Actions& actions)
    : model_(model)
    , actions_(actions) {
    connect(addAction(tr("Open Corvane")), &QAction::triggered, this, actions.openMainWindow);
    connect_ = addAction(tr("Connect Claude Code"));
    connect(connect_, &QAction::triggered, this, &TrayMenu::connectAgent);
    addSeparator();
    sessionsEnd_ = addSeparator();
    quiet_ = addAction(tr("Quiet for 1 hour"));
    connect(quiet_, &QAction::triggered, &model_, &AppModel::quietForAnHour);
    quietUntil_ = addAction(QString());
    quietUntil_->setEnabled(false);
    resume_ = addAction(tr("Resume"));
    connect(resume_, &QAction::triggered, &model_, &AppModel::resumeAlerts);
    connect(addAction(tr("Settings…")), &QAction::triggered, this, actions.openSettings);
    connect(addAction(tr("Quit")), &QAction::triggered, this, actions.quit);
    connect(&model_, &AppModel::changed, this, &TrayMenu::follow);
    connect(this, &QMenu::aboutToShow, this, &TrayMenu::noteOpening);
    connect(this, &QMenu::aboutToHide, this, [this] { openChanges_ = 0; });
    follow();
}

void TrayMenu::noteOpening() {
    openChanges_ = longestOpening;
    refresh();
}

void TrayMenu::follow() {
    const std::optional<Date> quietUntil = model_.quietUntil();
    const QFontMetricsF metrics(font(), this);
    std::vector<std::string> content{quietUntil ? times::quietUntil(*quietUntil).toStdString() : "",
                                     model_.isAnyAgentConnected() ? "connected" : ""};
    for (const AgentSession& session : model_.listedSessions()) {
        content.push_back(session.id());
        content.push_back(entry(session, statusBegin(session), metrics).toStdString());
    }
    const bool hasChanged = std::exchange(content_, std::move(content)) != content_;
    if (hasChanged || openChanges_ > 0) refresh();
    openChanges_ = std::max(0, openChanges_ - 1);
}

QAction* TrayMenu::makeEntry(const QString& id) {
    auto* const action = new QAction(this);
    action->setData(id);
    connect(action, &QAction::triggered, this, [this, id = id.toStdString()] {
        const std::vector<AgentSession> present = model_.board().sorted();
        const auto found = std::find_if(present.begin(), present.end(),
                                        [&id](const AgentSession& session) { return session.id() == id; });
        if (found != present.end()) model_.jump(*found);
    });
    return action;
}

void TrayMenu::connectAgent() {
    model_.connectAgent(AgentKind::claude);
    // A menu has no place for an error message; the window has.
    if (model_.connectError()) actions_.openMainWindow();
}

void TrayMenu::changeEvent(QEvent* event) {
    QMenu::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) refreshSessions();
}

void TrayMenu::refresh() {
    refreshSessions();
    const std::optional<Date> quietUntil = model_.quietUntil();
    connect_->setVisible(!model_.isAnyAgentConnected());
    quiet_->setVisible(!quietUntil);
    if (quietUntil) quietUntil_->setText(times::quietUntil(*quietUntil));
    quietUntil_->setVisible(quietUntil.has_value());
    resume_->setVisible(quietUntil.has_value());
}

void TrayMenu::refreshSessions() {
    const std::vector<AgentSession> sessions = model_.listedSessions();
    const QFontMetricsF metrics(font(), this);
    const Look look = Tokens::look(palette());
    // An entry keeps its session, even when the order changes while the menu is open.
    std::vector<QAction*> former = std::exchange(sessions_, {});
    for (const AgentSession& session : sessions) {
        const QString id = QString::fromStdString(session.id());
        const auto found = std::find_if(former.begin(), former.end(),
                                        [&id](const QAction* action) { return action->data() == id; });
        QAction* action = nullptr;
        if (found == former.end()) {
            action = makeEntry(id);
        } else {
            action = *found;
            former.erase(found);
        }
        action->setText(entry(session, model_.now(), metrics));
        showDot(*action, session.status, look);
        sessions_.push_back(action);
    }
    for (QAction* const action : former) {
        removeAction(action);
        action->deleteLater();
    }
    // From the last to the first, each above the one after it.
    QAction* below = sessionsEnd_;
    for (std::size_t i = sessions_.size(); i-- > 0;) {
        const QList<QAction*> present = actions();
        const qsizetype place = present.indexOf(sessions_[i]);
        if (place < 0 || place + 1 >= present.size() || present[place + 1] != below)
            insertAction(below, sessions_[i]);
        below = sessions_[i];
    }
    sessionsEnd_->setVisible(!sessions.empty());
}

} // namespace corvane
