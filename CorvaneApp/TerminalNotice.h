#pragma once

#include "BannerViews.h"

#include <functional>

namespace corvane {

/// Shows that a session's terminal could not be brought to the front, and in which folder the agent runs, so
/// that the user can look for it.
class TerminalNotice : public BannerCard {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr QSize contentSize{440, 64};

    TerminalNotice(const AgentSession& session, std::function<void()> onClose);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    LineLabel* title_;
    LineLabel* folder_;
    PlainButton* close_;
};

} // namespace corvane
