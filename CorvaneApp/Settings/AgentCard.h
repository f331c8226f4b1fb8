#pragma once

#include "Agents/AgentKind.h"
#include "Controls/Controls.h"

#include <vector>

namespace corvane {

class AgentGlyph;
class AppModel;

/// One agent: what connecting it means, whether it is connected, and the button that changes that. Once it
/// has been connected, a line says whether agents that already run report too, until the card is hidden.
/// Follows the model.
class AgentCard : public Card {
    Q_OBJECT

  public:
    /// `model` must outlive the card.
    AgentCard(AgentKind agent, AppModel& model, QWidget* parent);

    /// A card for each of the model's agents, in display order.
    [[nodiscard]] static std::vector<AgentCard*> forAll(AppModel& model, QWidget* parent);

    [[nodiscard]] AgentKind agent() const { return agent_; }

    /// 76 pixels, or more if the texts need it at this width.
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

  Q_SIGNALS:
    /// `heightForWidth` may have changed.
    void heightChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    enum class Connected { no, yes, justNow };

    [[nodiscard]] bool isConnected() const { return state_ != Connected::no; }
    void refresh();
    void setState(Connected state);
    void layOut();
    /// The width of the texts between the badge and the right side.
    [[nodiscard]] int textWidth(int width) const;
    /// The height of the texts at their width.
    [[nodiscard]] int textHeight(int width) const;
    [[nodiscard]] int trailingWidth() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QRect checkBox() const;

    AgentKind agent_;
    AppModel& model_;
    Connected state_ = Connected::no;
    AgentGlyph* glyph_;
    Paragraph* title_;
    Paragraph* detail_;
    Paragraph* runningAgents_;
    Paragraph* connectedWord_;
    PrimaryButton* connect_;
    BorderedButton* remove_;
};

} // namespace corvane
