#include "Fonts.h"

#include <QApplication>
#include <QFontDatabase>

namespace corvane::fonts {

namespace {

QFont sized(QFont font, int pixelSize, QFont::Weight weight) {
    // A desktop may name its font by a style, such as "Regular", which would win over the weight.
    font.setStyleName({});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace

QFont system(int pixelSize, QFont::Weight weight) {
    return sized(QApplication::font(), pixelSize, weight);
}

QFont monospaced(int pixelSize, QFont::Weight weight) {
    return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), pixelSize, weight);
}

} // namespace corvane::fonts
