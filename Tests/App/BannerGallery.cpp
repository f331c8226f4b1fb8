// Draws every state of the banners, with their shadow on a light and a dark desktop, into the folder given,
// for people to look at.

#include "BannerStates.h"
#include "Platform/Linux/Shadow.h"
#include "Tokens.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace {

using namespace corvane;

void paint(QPainter& painter, QPoint place, BannerCard& banner, ColorScheme scheme, qreal ratio) {
    banner.setPalette(Tokens::palette(scheme));
    const QImage shadow = cardShadow(banner.outline(), banner.size(), scheme, ratio);
    painter.drawImage(place - QPoint(shadowMargins.left(), shadowMargins.top()), shadow);
    QImage card((QSizeF(banner.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    card.setDevicePixelRatio(ratio);
    card.fill(Qt::transparent);
    banner.render(&card, QPoint(), QRegion(), QWidget::DrawChildren);
    painter.drawImage(place, card);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: BannerGallery FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            auto states = test::bannerStates();
            constexpr int rowHeight = 136;
            constexpr int columnWidth = 600;
            const QSize size(2 * columnWidth, static_cast<int>(states.size()) * rowHeight + 24);
            QImage page((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
            page.setDevicePixelRatio(ratio);
            QPainter painter(&page);
            painter.fillRect(QRect(0, 0, columnWidth, size.height()), QColor(0xC7, 0xD9, 0xE8));
            painter.fillRect(QRect(columnWidth, 0, columnWidth, size.height()), QColor(0x14, 0x12, 0x1A));
            int top = 24;
            for (test::BannerState& state : states) {
                for (const int left : {40, columnWidth + 40}) {
                    paint(painter, {left, top}, *state.banner, scheme, ratio);
                }
                top += rowHeight;
            }
            painter.end();
            const QString name =
                QStringLiteral("banners-%1-%2x.png")
                    .arg(scheme == ColorScheme::dark ? QStringLiteral("dark") : QStringLiteral("light"))
                    .arg(ratio);
            if (!page.save(folder.filePath(name))) return 1;
            std::printf("%s\n", qPrintable(folder.filePath(name)));
        }
    }
    return 0;
}
