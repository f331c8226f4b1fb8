#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

namespace corvane {

/// The symbols that come with the system. Main thread only.
class SystemSymbols {
  public:
    SystemSymbols() = default;
    SystemSymbols(const SystemSymbols&) = delete;
    SystemSymbols& operator=(const SystemSymbols&) = delete;
    virtual ~SystemSymbols() = default;

    /// Draws the system's symbol of this name, black, into the middle of `box` (in pixels of `image`, which
    /// is transparent and of the format ARGB32_Premultiplied). Returns false, with nothing drawn, if the
    /// system has none.
    [[nodiscard]] virtual bool draw(QImage& image, const QString& name, const QRectF& box) = 0;
};

} // namespace corvane
