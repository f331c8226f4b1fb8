#pragma once

#include "Platform/WindowShadow.h"

namespace corvane {

/// The window server blends every window and draws the shadows itself.
class MacWindowShadow : public WindowShadow {
  public:
    [[nodiscard]] bool isBlended() const override { return true; }
    [[nodiscard]] QMargins margins() const override { return {}; }
    [[nodiscard]] bool isBlurredBehind() const override { return false; }
    void setBlurBehind(const QWidget& /*window*/, const QPainterPath& /*outline*/) override {}
    void paint(QPainter& /*painter*/, const QWidget& /*window*/, const QPainterPath& /*outline*/,
               QSize /*cardSize*/) override {}
    void cut(QWidget& /*window*/, const QPainterPath& /*outline*/) override {}
};

} // namespace corvane
