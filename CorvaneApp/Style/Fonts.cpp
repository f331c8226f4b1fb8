#include "Style/Fonts.h"

#include <QApplication>
#include <QFontDatabase>

#include <cmath>

namespace corvane::fonts {

namespace {

QFont sized(QFont font, qreal pixelSize, QFont::Weight weight) {
    // A desktop may name its font by a style, such as "Regular", which would win over the weight.
    font.setStyleName({});
    // Fonts come in whole pixels only, also where they are set in points. A half is cut, so that what fits at
    // the ordinary text size does at the larger ones.
    font.setPixelSize(static_cast<int>(std::ceil(pixelSize - 0.5)));
    font.setWeight(weight);
    return font;
}

} // namespace

QFont system(qreal pixelSize, QFont::Weight weight) {
    return sized(QApplication::font(), pixelSize, weight);
}

QFont monospaced(qreal pixelSize, QFont::Weight weight) {
    return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), pixelSize, weight);
}

} // namespace corvane::fonts
