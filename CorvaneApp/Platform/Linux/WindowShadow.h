#pragma once

#include "Platform/WindowShadow.h"
#include "Style/Tokens.h"

#include <QImage>

namespace corvane {

/// The window paints its own shadow where a compositing manager runs.
class LinuxWindowShadow : public WindowShadow {
  public:
    [[nodiscard]] bool isBlended() const override;
    [[nodiscard]] QMargins margins() const override;
    [[nodiscard]] bool isBlurredBehind() const override;
    void setBlurBehind(const QWidget& window, const QPainterPath& outline) override;
    void paint(QPainter& painter, const QWidget& window, const QPainterPath& outline,
               QSize cardSize) override;
    void cut(QWidget& window, const QPainterPath& outline) override;

  private:
    /// The last shadow painted, cached: it takes a while to compute, and a card rarely changes its size.
    struct LastShadow {
        QSize cardSize;
        ColorScheme scheme{};
        qreal ratio = 0;
        QImage image;
    };

    LastShadow last_;
};

} // namespace corvane
