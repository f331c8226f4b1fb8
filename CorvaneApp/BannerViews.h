#pragma once

#include "Controls/LineFit.h"
#include "Platform/PanelContent.h"
#include "Platform/Platform.h"
#include "Sessions/SessionBoard.h"

#include <QMetaObject>
#include <QString>

#include <functional>
#include <vector>

namespace corvane {

class AgentGlyph;
class LineLabel;
class PlainButton;
class PrimaryButton;

/// The base class of the banners: the card with its continuous corners, and one accessible element that
/// contains its parts.
class BannerCard : public PanelContent {
    Q_OBJECT

  public:
    enum class Edge { hairline, primaryOutline };

    [[nodiscard]] QPainterPath outline() const override;

    /// The card's current fill colour.
    [[nodiscard]] QColor fillColor() const;

  protected:
    BannerCard(AgentSession session, QSize size, Edge edge);

    [[nodiscard]] const AgentSession& session() const { return session_; }

    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    AgentSession session_;
    Edge edge_;
};

/// The banner of a session that waits for the user. Shows the session as it was given; only its clock
/// changes.
class WaitingBanner : public BannerCard {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr QSize contentSize{520, 96};

    WaitingBanner(const AgentSession& session, Clock clock, std::function<void()> onJump,
                  std::function<void()> onSnooze, std::function<void()> onClose);
    WaitingBanner(const WaitingBanner&) = delete;
    WaitingBanner& operator=(const WaitingBanner&) = delete;
    ~WaitingBanner() override;

    /// Sets whether the button's tool tip reports that the terminal was not found the last time.
    void setTerminalMissing(bool isMissing);

    /// "waiting " and the time since the wait began; empty for a session that does not wait.
    [[nodiscard]] QString waitedLabel(Date now) const;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    /// The width left for the texts beside the button column.
    [[nodiscard]] int textWidth() const;
    /// Narrows the button as far as that lets a text fit that would otherwise be cut.
    void makeRoomForTexts();
    void stopClock();

    Clock clock_;
    AgentGlyph* glyph_;
    LineLabel* title_;
    LineLabel* subtitle_;
    LineLabel* waited_;
    PrimaryButton* jump_;
    PlainButton* snooze_;
    PlainButton* close_;
    std::vector<LineFit> fits_;
    QMetaObject::Connection tick_; // of the clock, while it runs
};

/// The banner of a session that has finished. Shows the session as it was given.
class DoneBanner : public BannerCard {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr QSize contentSize{360, 64};

    DoneBanner(const AgentSession& session, std::function<void()> onClose);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    LineLabel* title_;
    LineLabel* subtitle_;
    PlainButton* close_;
    std::vector<LineFit> fits_;
};

} // namespace corvane
