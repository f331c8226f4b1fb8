#pragma once

#include <QPainterPath>
#include <QWidget>

namespace corvane {

/// A view for a floating panel: draws its own card, with the desktop visible around its corners.
class PanelContent : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;

    /// The card's outline in the view's coordinates.
    [[nodiscard]] virtual QPainterPath outline() const = 0;

    /// Whether the desktop blurs what lies behind the card; where not, the card is drawn opaque.
    void setBlurredBehind(bool blurredBehind) {
        if (blurredBehind_ == blurredBehind) return;
        blurredBehind_ = blurredBehind;
        update();
    }
    [[nodiscard]] bool isBlurredBehind() const { return blurredBehind_; }

    /// Whether the panel itself has the system's translucent material in the card's shape: the view then
    /// omits its own background.
    void setOnMaterial(bool onMaterial) {
        if (onMaterial_ == onMaterial) return;
        onMaterial_ = onMaterial;
        update();
    }
    [[nodiscard]] bool isOnMaterial() const { return onMaterial_; }

  private:
    bool blurredBehind_ = false;
    bool onMaterial_ = false;
};

} // namespace corvane
