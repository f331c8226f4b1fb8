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

    /// Whether the panel itself has the system's translucent material in the card's shape: the view leaves
    /// its own ground out then.
    void setOnMaterial(bool onMaterial) {
        if (onMaterial_ == onMaterial) return;
        onMaterial_ = onMaterial;
        update();
    }
    [[nodiscard]] bool isOnMaterial() const { return onMaterial_; }

  private:
    bool blended_ = true;
    bool onMaterial_ = false;
};

} // namespace corvane
