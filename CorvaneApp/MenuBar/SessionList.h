#pragma once

#include "MenuBar/SessionRow.h"

#include <QScrollArea>

#include <functional>
#include <vector>

class QTimer;

namespace corvane {

/// The sessions, one below the other. Up to six are fully visible; the list scrolls to the others. A thumb is
/// shown over the list while the pointer is on it or it scrolls. Each edge beyond which there is more fades
/// out, except with high contrast.
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

    /// The height that all rows need, at most the largest one.
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
