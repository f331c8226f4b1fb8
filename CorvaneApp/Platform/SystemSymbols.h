#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

namespace corvane {

/// The system's built-in symbols. Main thread only.
class SystemSymbols {
  public:
    SystemSymbols() = default;
    SystemSymbols(const SystemSymbols&) = delete;
    SystemSymbols& operator=(const SystemSymbols&) = delete;
    virtual ~SystemSymbols() = default;

    /// Draws the system's symbol of this name in black, centred in `box` (in pixels of `image`, which is
    /// transparent and in the format ARGB32_Premultiplied). Draws nothing and returns false if the system has
    /// no such symbol.
    [[nodiscard]] virtual bool draw(QImage& image, const QString& name, const QRectF& box) = 0;
};

} // namespace corvane
