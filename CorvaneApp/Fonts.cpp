#include "Fonts.h"

#include <QApplication>
#include <QFontDatabase>

namespace corvane::fonts {

namespace {

QFont sized(QFont font, int pixelSize, QFont::Weight weight) {
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
