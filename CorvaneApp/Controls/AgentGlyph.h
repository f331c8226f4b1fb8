#pragma once

#include "Agents/AgentKind.h"

#include <QString>
#include <QWidget>

namespace corvane {

/// The round badge that identifies an agent by a letter, 36 pixels wide. Its ring shows that the agent waits.
class AgentGlyph : public QWidget {
    Q_OBJECT

  public:
    AgentGlyph(AgentKind agent, bool waiting, QWidget* parent);

    [[nodiscard]] QString letter() const;
    [[nodiscard]] bool isWaiting() const { return waiting_; }

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    AgentKind agent_;
    bool waiting_;
};

} // namespace corvane
