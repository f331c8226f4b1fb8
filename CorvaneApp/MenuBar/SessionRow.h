#pragma once

#include "Controls/Buttons.h"
#include "Sessions/SessionBoard.h"
#include "Support/Date.h"

#include <QColor>
#include <QString>
#include <QStringList>

#include <functional>
#include <string>

namespace corvane {

class LineLabel;

/// One session in the tray panel: a button with the session's status as a dot, its project and what its agent
/// is doing.
class SessionRow : public PushButton {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr int rowHeight = 48;

    /// Times are shown relative to `now`. `onTap` is called with the session as it was last set.
    SessionRow(const AgentSession& session, Date now, std::function<void(const AgentSession&)> onTap,
               QWidget* parent);

    /// Shows a new state of the same session; what stays the same is not repainted.
    void setSession(const AgentSession& session, Date now);

    /// Sets whether the row's tool tip reports that the session's terminal was not found the last time.
    void setTerminalMissing(bool isMissing);

    [[nodiscard]] const AgentSession& session() const { return session_; }
    /// Project, agent and status in one line, for assistive technology.
    [[nodiscard]] QString spokenText() const;
    /// The lines that a tool tip adds to `spokenText`.
    [[nodiscard]] QStringList notes() const;
    [[nodiscard]] QColor dotColor() const;

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void layOut();

    AgentSession session_;
    LineLabel* name_;
    LineLabel* status_;
    QString statusLine_;
    QString snoozeNote_;
    bool isTerminalMissing_ = false;
};

} // namespace corvane
