#include "MenuBar/TrayMenu.h"

#include "Controls/Elision.h"
#include "Model/AppModel.h"
#include "Sessions/AlertText.h"
#include "Style/Translations.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

// A host on the message bus tells that it opens the menu; not all of them tell that they have closed it. The
// model changes once a second, and now and then in between.
constexpr int longestOpening = 60;
constexpr double longestName = 40; // code points; a menu is as wide as its longest entry

double codePoints(std::string_view text) {
    return static_cast<double>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

QString entry(const AgentSession& session, Date now) {
    const std::string whole = QString::fromStdString(session.repoName()).simplified().toStdString();
    const QString name = QString::fromStdString(text::elidingMiddle(whole, longestName, codePoints));
    const QString agent = QString::fromUtf8(session.agent.displayName());
    const QString status = QString::fromStdString(AlertText::statusLine(session, now, translations::words));
    // A single ampersand would mark a key.
    return QStringList{name, agent, status}
        .join(QStringLiteral(" · "))
        .replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// When the session's status began, at which no time has run yet.
Date statusBegin(const AgentSession& session) {
    if (const SessionStatus::Waiting* const waiting = session.status.ifWaiting()) return waiting->since;
    if (const SessionStatus::Done* const done = session.status.ifDone()) return done->at;
    return session.lastEvent;
}

} // namespace

TrayMenu::TrayMenu(AppModel& model, const Actions& actions)
    : model_(model) {
    connect(addAction(tr("Open Corvane")), &QAction::triggered, this, actions.openMainWindow);
    addSeparator();
    sessionsEnd_ = addSeparator();
    quiet_ = addAction(tr("Quiet for 1 hour"));
    connect(quiet_, &QAction::triggered, &model_, &AppModel::quietForAnHour);
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
    std::vector<std::string> content{model_.prefs().isQuiet(model_.now()) ? "quiet" : ""};
    for (const AgentSession& session : model_.board().sorted()) {
        content.push_back(session.id());
        content.push_back(entry(session, statusBegin(session)).toStdString());
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

void TrayMenu::refresh() {
    const std::vector<AgentSession> sessions = model_.board().sorted();
    // An entry stays that of its session, also while the menu is open and the order changes.
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
        action->setText(entry(session, model_.now()));
        sessions_.push_back(action);
    }
    for (QAction* const action : former) {
        removeAction(action);
        action->deleteLater();
    }
    // From the last to the first, each above the one that follows it.
    QAction* below = sessionsEnd_;
    for (std::size_t i = sessions_.size(); i-- > 0;) {
        const QList<QAction*> present = actions();
        const qsizetype place = present.indexOf(sessions_[i]);
        if (place < 0 || place + 1 >= present.size() || present[place + 1] != below)
            insertAction(below, sessions_[i]);
        below = sessions_[i];
    }
    sessionsEnd_->setVisible(!sessions.empty());
    const bool isQuiet = model_.prefs().isQuiet(model_.now());
    quiet_->setVisible(!isQuiet);
    resume_->setVisible(isQuiet);
}

} // namespace corvane
