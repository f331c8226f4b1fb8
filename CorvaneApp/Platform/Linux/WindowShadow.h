#pragma once

#include "Platform/WindowShadow.h"
#include "Style/Tokens.h"

#include <QImage>

namespace corvane {

/// Painted by the window itself, where a compositing manager runs.
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
    /// The shadow that was painted last: it takes a while to make, and a card keeps its size for long.
    struct LastShadow {
        QSize cardSize;
        ColorScheme scheme{};
        qreal ratio = 0;
        QImage image;
    };

    LastShadow last_;
};

} // namespace corvane
