// Draws every state of the banners, and a stack of them, with their shadow on a light and a dark desktop,
// into the given folder, for visual review.

#include "App/Support/BannerStates.h"
#include "App/Support/LargeText.h"
#include "App/Support/Pictures.h"
#include "Platform/Linux/Shadow.h"
#include "Style/Tokens.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>

namespace {

using namespace corvane;

constexpr int margin = 40;
constexpr int gap = 8; // between the banners of a stack

void paint(QPainter& painter, QPoint place, BannerCard& banner, const test::Variant& variant) {
    banner.setPalette(Tokens::palette(variant.look));
    if (!variant.look.isHighContrast()) {
        const QImage shadow = cardShadow(banner.outline(), banner.size(), variant.look.scheme, variant.ratio);
        painter.drawImage(place - QPoint(shadowMargins.left(), shadowMargins.top()), shadow);
    }
    QImage card(banner.size() * variant.ratio, QImage::Format_ARGB32_Premultiplied);
    card.setDevicePixelRatio(variant.ratio);
    card.fill(Qt::transparent);
    banner.render(&card, QPoint(), QRegion(), QWidget::DrawChildren);
    painter.drawImage(place, card);
}

/// A page with two columns, a light desktop and a dark one, of this height.
QImage page(int columnWidth, int height, int ratio) {
    QImage image(QSize(2 * columnWidth, height) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, columnWidth, height), QColor(0xC7, 0xD9, 0xE8));
    painter.fillRect(QRect(columnWidth, 0, columnWidth, height), QColor(0x14, 0x12, 0x1A));
    return image;
}

QImage states(const test::Variant& variant) {
    const auto all = test::bannerStates();
    const int rowHeight = scaled(WaitingBanner::contentSize).height() + margin;
    const int columnWidth = scaled(WaitingBanner::contentSize).width() + 2 * margin;
    QImage image = page(columnWidth, static_cast<int>(all.size()) * rowHeight + margin, variant.ratio);
    QPainter painter(&image);
    int top = margin;
    for (const test::BannerState& state : all) {
        for (const int left : {margin, columnWidth + margin})
            paint(painter, {left, top}, *state.banner, variant);
        top += rowHeight;
    }
    return image;
}

QImage stack(const test::Variant& variant) {
    auto all = test::bannerStates();
    const auto named = [&all](const char* name) -> BannerCard& {
        return *std::find_if(all.begin(), all.end(), [name](const auto& state) {
                    return state.name == name;
                })->banner;
    };
    const int columnWidth = scaled(WaitingBanner::contentSize).width() + 2 * margin;
    QImage image = page(columnWidth, scaled(96 + 64 + 96) + 2 * gap + 2 * margin, variant.ratio);
    QPainter painter(&image);
    for (const int column : {0, columnWidth}) {
        int bottom = static_cast<int>(image.height() / image.devicePixelRatio()) - margin;
        // The oldest is painted last: no card is in another's shadow.
        std::vector<std::pair<BannerCard*, int>> places;
        for (const char* const name : {"waiting", "done-codex", "reply"}) {
            BannerCard& banner = named(name);
            bottom -= banner.height();
            places.emplace_back(&banner, bottom);
            bottom -= gap;
        }
        std::reverse(places.begin(), places.end());
        for (const auto& [banner, top] : places)
            paint(painter, {column + (columnWidth - banner->width()) / 2, top}, *banner, variant);
    }
    return image;
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
    for (const test::Variant& variant : test::galleryVariants()) {
        const test::LargeText size(variant.textScale);
        if (!states(variant).save(folder.filePath(QStringLiteral("banners-%1.png").arg(variant.name))))
            return 1;
        if (!stack(variant).save(folder.filePath(QStringLiteral("stack-%1.png").arg(variant.name)))) return 1;
    }
    return 0;
}
