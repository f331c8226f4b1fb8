#pragma once

#include <QPainterPath>
#include <QWidget>

namespace corvane {

/// A view made for a floating panel: draws its own card, whose corners let the desktop show.
class PanelContent : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;

    /// The card's outline in the view's coordinates.
    [[nodiscard]] virtual QPainterPath outline() const = 0;

    /// Whether the desktop blends the panel with what lies below it; where not, the card is drawn opaque.
    void setBlended(bool blended) {
        if (blended_ == blended) return;
        blended_ = blended;
        update();
    }
    [[nodiscard]] bool isBlended() const { return blended_; }

  private:
    bool blended_ = true;
};

} // namespace corvane
