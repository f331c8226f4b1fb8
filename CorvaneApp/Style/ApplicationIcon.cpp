#include "Style/ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>

// A static library's resources must be initialised by name, outside of any namespace.
static void initializeResources() {
    Q_INIT_RESOURCE(ApplicationIcon);
}

namespace corvane::applicationicon {

namespace {

constexpr int largestSmallSide = 24;

// The tile within the drawings.
constexpr QRectF tile(4, 4, 56, 56);

} // namespace

QImage image(int side) {
    static const bool isInitialized = [] {
        initializeResources();
        return true;
    }();
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(side <= largestSmallSide ? QStringLiteral(":/icon/corvane-small.svg")
                                                  : QStringLiteral(":/icon/corvane.svg"));
    if (!isInitialized || !drawing.isValid()) return image;

    const int margin = std::max(1, qRound(side / 16.0));
    const double scale = (side - 2 * margin) / tile.width();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(margin, margin);
    painter.scale(scale, scale);
    painter.translate(-tile.topLeft());
    drawing.render(&painter, drawing.viewBoxF());
    return image;
}

QIcon icon() {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(QPixmap::fromImage(image(side)));
    return icon;
}

} // namespace corvane::applicationicon
