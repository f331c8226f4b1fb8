#pragma once

#include "Agents/AgentKind.h"
#include "Controls/Controls.h"

#include <vector>

namespace corvane {

class AgentGlyph;
class AppModel;

/// One agent: what connecting it means, whether it is connected, and the button that changes that. Follows
/// the model.
class AgentCard : public Card {
    Q_OBJECT

  public:
    /// `model` must outlive the card.
    AgentCard(AgentKind agent, AppModel& model, QWidget* parent);

    /// A card for each of the model's agents, in display order.
    [[nodiscard]] static std::vector<AgentCard*> forAll(AppModel& model, QWidget* parent);

    [[nodiscard]] AgentKind agent() const { return agent_; }

    /// 76 pixels, or as much as the texts take at this width.
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

  Q_SIGNALS:
    /// The height that it takes may be another one now.
    void heightChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    void layOut();
    /// The width of the texts between the badge and the right side.
    [[nodiscard]] int textWidth(int width) const;
    [[nodiscard]] int trailingWidth() const;
    [[nodiscard]] QString detail(bool connected) const;
    [[nodiscard]] QRect checkBox() const;

    AgentKind agent_;
    AppModel& model_;
    bool isConnected_ = false;
    AgentGlyph* glyph_;
    Paragraph* title_;
    Paragraph* detail_;
    Paragraph* connectedWord_;
    PrimaryButton* connect_;
    BorderedButton* remove_;
};

} // namespace corvane
