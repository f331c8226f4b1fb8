#pragma once

#include "Style/Tokens.h"

#include <QImage>
#include <QString>
#include <QWidget>

#include <vector>

namespace corvane::test {

/// One of the variants in which a state is drawn, and its suffix of the picture's name.
struct Variant {
    QString name;
    Look look;
    int ratio = 1;
    double textScale = 1;
};

/// Both appearances with normal contrast, at 1x and 2x.
inline std::vector<Variant> ordinaryVariants() {
    return {{QStringLiteral("light-1x"), ColorScheme::light, 1},
            {QStringLiteral("light-2x"), ColorScheme::light, 2},
            {QStringLiteral("dark-1x"), ColorScheme::dark, 1},
            {QStringLiteral("dark-2x"), ColorScheme::dark, 2}};
}

/// The variants for people with impaired vision.
inline std::vector<Variant> legibleVariants() {
    return {{QStringLiteral("light-high-contrast-1x"), {ColorScheme::light, Contrast::high}},
            {QStringLiteral("dark-high-contrast-1x"), {ColorScheme::dark, Contrast::high}},
            {QStringLiteral("light-text-1.25-1x"), ColorScheme::light, 1, 1.25},
            {QStringLiteral("dark-text-1.5-1x"), ColorScheme::dark, 1, 1.5}};
}

/// The variants in the galleries.
inline std::vector<Variant> galleryVariants() {
    std::vector<Variant> variants = ordinaryVariants();
    for (const Variant& legible : legibleVariants()) {
        variants.push_back(legible);
        Variant sharp = legible;
        sharp.name.replace(QStringLiteral("-1x"), QStringLiteral("-2x"));
        sharp.ratio = 2;
        variants.push_back(sharp);
    }
    return variants;
}

/// The widget in this look, at the scale factor `ratio`.
inline QImage pictureOf(QWidget& widget, Look look, int ratio) {
    widget.setPalette(Tokens::palette(look));
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Tokens::background.color(look));
    widget.render(&image);
    return image;
}

} // namespace corvane::test
