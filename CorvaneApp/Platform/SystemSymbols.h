#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

/// The symbols that come with the system.
namespace corvane::systemsymbols {

/// Draws the system's symbol of this name, black, into the middle of `box` (in pixels of `image`, which is
/// transparent and of the format ARGB32_Premultiplied). False, and nothing drawn, where the system has none.
/// Main thread only.
[[nodiscard]] bool draw(QImage& image, const QString& name, const QRectF& box);

} // namespace corvane::systemsymbols
