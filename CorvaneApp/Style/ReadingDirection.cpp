#include "Style/ReadingDirection.h"

#include <algorithm>

namespace corvane {

Qt::LayoutDirection readingDirection(const QString& text, Qt::LayoutDirection layout) {
    int isolates = 0; // that are open
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        switch (QChar::direction(character)) {
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
            ++isolates;
            break;
        case QChar::DirPDI:
            isolates = std::max(0, isolates - 1);
            break;
        case QChar::DirL:
            if (isolates == 0) return Qt::LeftToRight;
            break;
        case QChar::DirR:
        case QChar::DirAL:
            if (isolates == 0) return Qt::RightToLeft;
            break;
        default:
            break;
        }
    }
    return layout;
}

} // namespace corvane
