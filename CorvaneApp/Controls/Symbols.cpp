#include "Controls/Symbols.h"

#include "Platform/SystemSymbols.h"

#include <QFile>
#include <QImage>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

// A static library's resources must be initialised by name, outside of any namespace.
static void initializeResources() {
    Q_INIT_RESOURCE(Symbols);
}

namespace corvane::symbols {

namespace {

SystemSymbols* systemSymbols = nullptr;

void setSystem(SystemSymbols* system) {
    systemSymbols = system;
    QPixmapCache::clear(); // it holds symbols of the previous source
}

bool exists(const QString& name) {
    static const bool isInitialized = [] {
        initializeResources();
        return true;
    }();
    return isInitialized && QFile::exists(QStringLiteral(":/symbols/%1.svg").arg(name));
}

QPixmap tinted(const QString& name, QSize pixels, const QRectF& boxInPixels, const QColor& color) {
    const QString key = QStringLiteral("symbol/%1/%2x%3/%4,%5/%6")
                            .arg(name)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(boxInPixels.x())
                            .arg(boxInPixels.y())
                            .arg(color.name(QColor::HexArgb));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;

    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const bool isDrawn = systemSymbols != nullptr && systemSymbols->draw(image, name, boxInPixels);
    QPainter painter(&image);
    if (!isDrawn) {
        QSvgRenderer renderer(QStringLiteral(":/symbols/%1.svg").arg(name));
        if (!renderer.isValid()) return {};
        renderer.render(&painter, boxInPixels);
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();

    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

SystemScope::SystemScope(SystemSymbols& system)
    : previous_(systemSymbols) {
    setSystem(&system);
}

SystemScope::~SystemScope() {
    setSystem(previous_);
}

void paint(QPainter& painter, const QString& name, const QRectF& box, const QColor& color) {
    if (!exists(name)) return;

    // The image covers whole device pixels around the box, so that drawing it resamples nothing.
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(box);
    const QRect pixels = device.toAlignedRect();
    const QPixmap pixmap = tinted(name, pixels.size(), device.translated(-pixels.topLeft()), color);

    painter.drawPixmap(toDevice.inverted().mapRect(QRectF(pixels)), pixmap, pixmap.rect());
}

} // namespace corvane::symbols
