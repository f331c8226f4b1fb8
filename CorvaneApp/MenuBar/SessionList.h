#pragma once

#include "MenuBar/SessionRow.h"

#include <QScrollArea>

#include <functional>
#include <vector>

class QTimer;

namespace corvane {

/// The sessions below one another. Up to six are seen whole; further ones are reached by scrolling, with a
/// thumb that lies over the list while the pointer is there or it scrolls, and a fade at each edge beyond
/// which there is more, but for high contrast.
class SessionList : public QScrollArea {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr int largestHeight = 288;

    SessionList(std::function<void(const AgentSession&)> onTap, QWidget* parent);

    /// Shows these sessions in this order. A session that was shown before keeps its row, and with it the
    /// focus; when the row with the focus is removed, the next one gets it, or else the last one. Returns
    /// whether rows were added, moved or removed.
    bool setSessions(const std::vector<AgentSession>& sessions, Date now);

    /// Scrolls to the top, and shows the thumb for a moment where there is more than fits.
    void showFromTop();

    /// From top to bottom.
    [[nodiscard]] const std::vector<SessionRow*>& rows() const { return rows_; }

    /// The height that all rows need, or the largest.
    [[nodiscard]] int wantedHeight() const;

    /// Moves the focus to the next row (`step` 1) or the previous one (-1); to the first or last row when no
    /// row has it. Returns false when there is no such row.
    bool moveFocus(int step);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void layOut();
    void updateOverlays();

    std::function<void(const AgentSession&)> onTap_;
    std::vector<SessionRow*> rows_;
    QWidget* upperFade_;
    QWidget* lowerFade_;
    QWidget* thumb_;
    QTimer* thumbTimer_;
};

} // namespace corvane
