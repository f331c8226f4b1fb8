#include "TrayMenu.h"

#include "AppModel.h"
#include "Sessions/AlertText.h"
#include "Translations.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr qsizetype longestName = 40; // characters; a menu is as wide as its longest entry

QString entry(const AgentSession& session, Date now) {
    QString name = QString::fromStdString(session.repoName()).simplified();
    if (name.size() > longestName) {
        constexpr qsizetype kept = longestName / 2 - 1;
        name = name.left(kept) + QChar(0x2026) + name.right(kept);
    }
    const QString agent =
        session.agent == AgentKind::codex ? QStringLiteral("Codex") : QStringLiteral("Claude");
    const QString status = QString::fromStdString(AlertText::statusLine(session, now, translations::words));
    // A single ampersand would mark a key.
    return QStringList{name, agent, status}
        .join(QStringLiteral(" · "))
        .replace(QLatin1Char('&'), QLatin1String("&&"));
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
    connect(&model_, &AppModel::changed, this, &TrayMenu::refresh);
    refresh();
}

void TrayMenu::refresh() {
    const std::vector<AgentSession> sessions = model_.board().sorted();
    while (sessions_.size() > sessions.size()) {
        sessions_.back()->deleteLater();
        removeAction(sessions_.back());
        sessions_.pop_back();
    }
    while (sessions_.size() < sessions.size()) {
        auto* const action = new QAction(this);
        connect(action, &QAction::triggered, this, [this, action] {
            const std::string id = action->data().toString().toStdString();
            const std::vector<AgentSession> present = model_.board().sorted();
            const auto found =
                std::find_if(present.begin(), present.end(),
                             [&id](const AgentSession& session) { return session.id() == id; });
            if (found != present.end()) model_.jump(*found);
        });
        insertAction(sessionsEnd_, action);
        sessions_.push_back(action);
    }
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        sessions_[i]->setText(entry(sessions[i], model_.now()));
        sessions_[i]->setData(QString::fromStdString(sessions[i].id()));
    }
    sessionsEnd_->setVisible(!sessions.empty());
    const bool isQuiet = model_.prefs().isQuiet(model_.now());
    quiet_->setVisible(!isQuiet);
    resume_->setVisible(isQuiet);
}

} // namespace corvane
