#include "Style/Fonts.h"

#include <QApplication>
#include <QFontDatabase>

#include <algorithm>
#include <cmath>

namespace corvane::fonts {

namespace {

QFont sized(QFont font, qreal pixelSize, QFont::Weight weight) {
    // A desktop's font may have a style name, such as "Regular", which would override the weight.
    font.setStyleName({});
    // Font sizes are whole pixels, even if they are set in points. Halves are rounded down, so that what fits
    // at the ordinary text size fits at the larger ones.
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

std::vector<QFont> narrowing(const QFont& font, qreal smallest) {
    std::vector<QFont> result{font};
    const int last = std::min(font.pixelSize(), static_cast<int>(std::floor(smallest)));
    for (int size = font.pixelSize() - 1; size >= last; --size) {
        result.push_back(font);
        result.back().setPixelSize(size);
    }
    for (const qreal part : {0.5, 1.0}) {
        result.push_back(result.back());
        result.back().setLetterSpacing(QFont::AbsoluteSpacing, -part * tightestSpacing * last);
    }
    return result;
}

} // namespace corvane::fonts
