#pragma once

#include "Platform/PanelContent.h"
#include "Style/Shapes.h"

#include <QPainter>
#include <QRect>
#include <QTest>

#include <functional>

namespace corvane::test {

/// Runs the event loop until `condition` holds, for five seconds at most.
inline bool holdsSoon(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition);
}

/// A card of one colour.
class PlainCard : public PanelContent {
  public:
    [[nodiscard]] QPainterPath outline() const override { return shapes::continuousRoundedRect(rect(), 16); }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillPath(outline(), palette().window());
    }
};

} // namespace corvane::test
