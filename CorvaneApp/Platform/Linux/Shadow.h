#pragma once

#include "Style/Tokens.h"

#include <QImage>
#include <QMargins>
#include <QPainterPath>
#include <QRegion>
#include <QSize>

namespace corvane {

/// How far a card's shadow reaches beyond it, in device-independent pixels.
inline constexpr QMargins shadowMargins{24, 16, 24, 32};

/// The shadow of a card, black with alpha and nothing below the card itself: an image of the card's size with
/// the margins around it. `outline` is the card's, in its own coordinates. Takes a few milliseconds: cache
/// the result.
[[nodiscard]] QImage cardShadow(const QPainterPath& outline, QSize cardSize, ColorScheme scheme,
                                qreal devicePixelRatio);

/// The outline as a region of device pixels, as window shapes need it.
[[nodiscard]] QRegion inPixels(const QPainterPath& outline, qreal devicePixelRatio);

} // namespace corvane
