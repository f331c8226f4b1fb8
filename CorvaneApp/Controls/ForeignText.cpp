#include "Controls/ForeignText.h"

#include <algorithm>

namespace corvane::foreign {

namespace {

bool breaksTheLine(QChar character) {
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

bool steersDirection(QChar character) {
    return (character >= QChar(u'\u202A') && character <= QChar(u'\u202E')) || // embeddings and overrides
           (character >= QChar(u'\u2066') && character <= QChar(u'\u2069'));   // isolates
}

} // namespace

QString line(QString text) {
    text.removeIf(steersDirection);
    std::replace_if(text.begin(), text.end(), breaksTheLine, QLatin1Char(' '));
    return text;
}

QString isolated(const QString& text) {
    constexpr QChar firstStrongIsolate(u'\u2068');
    constexpr QChar popIsolate(u'\u2069');
    const QString own = line(text);
    return isBlank(own) ? QString() : firstStrongIsolate + own + popIsolate;
}

bool isBlank(const QString& text) {
    return line(text).trimmed().isEmpty();
}

QString toolTip(const QString& text) {
    return QStringLiteral("<span>%1</span>").arg(line(text).toHtmlEscaped());
}

} // namespace corvane::foreign
