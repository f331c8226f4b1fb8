#include "Style/Translations.h"

#include <QCoreApplication>
#include <QTranslator>

namespace corvane::translations {

QString systemWords() {
    return QStringLiteral(":/translations/corvane_en.qm");
}

void install(QCoreApplication& application) {
    auto* const words = new QTranslator(&application);
    if (words->load(systemWords())) QCoreApplication::installTranslator(words);
}

std::string words(const Phrase& phrase) {
    return QCoreApplication::translate(phrase.context, phrase.key).toStdString();
}

} // namespace corvane::translations
