#include "Controls/LineFit.h"

#include "Controls/Labels.h"

#include <QFontMetricsF>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// No line of more UTF-16 units than this fits anywhere, and measuring it would take time.
constexpr qsizetype longestMeasured = 256;

/// Whether the letters join: with tighter spacing, they would overlap where they do.
bool isCursive(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar letter) { return letter.direction() == QChar::DirAL; });
}

} // namespace

LineFit::LineFit(LineLabel& label, std::vector<QFont> fonts)
    : label_(&label)
    , fonts_(std::move(fonts)) {}

const QFont* LineFit::fitting(int width) const {
    const QString& line = label_->line();
    if (line.size() > longestMeasured) return nullptr;
    const bool keepsSpacing = isCursive(line);
    const auto fits = [&](const QFont& font) {
        if (keepsSpacing && font.letterSpacing() != 0) return false;
        return QFontMetricsF(font, label_).horizontalAdvance(line) <= width;
    };
    const auto found = std::find_if(fonts_.begin(), fonts_.end(), fits);
    return found != fonts_.end() ? &*found : nullptr;
}

void LineFit::apply(int width) {
    const QFont* const font = fitting(width);
    label_->setFont(font != nullptr ? *font : fonts_.front());
}

} // namespace corvane
