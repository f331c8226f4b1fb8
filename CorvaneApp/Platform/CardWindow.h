#pragma once

#include "Style/Tokens.h"

#include <QMargins>
#include <QPainterPath>
#include <QSize>

class QPainter;
class QWidget;

/// What surrounds a frameless window of the application's own whose content is a card. Main thread only.
namespace corvane::cardwindow {

/// Whether windows are blended with what lies below, so that a card can have round corners and a shadow. May
/// change while running: ask at each show.
[[nodiscard]] bool isBlended();

/// The room for the shadow around a card, in device-independent pixels; none where nothing is blended.
[[nodiscard]] QMargins margins();

/// Paints the shadow of a card of this outline, which lies at `margins` in `window`.
void paintShadow(QPainter& painter, const QWidget& window, const QPainterPath& outline, QSize cardSize);

} // namespace corvane::cardwindow
