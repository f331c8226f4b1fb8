#pragma once

#include <QByteArray>
#include <QString>
#include <QTranslator>

namespace corvane::test {

/// Translates every text into letters that occur in no key, and makes it longer by half.
class PseudoTranslator : public QTranslator {
  public:
    explicit PseudoTranslator(Qt::LayoutDirection direction)
        : direction_(direction) {}

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                                    int /*n*/) const override {
        if (!QByteArray(context).startsWith("corvane::")) return {};
        QString text = QString::fromUtf8(source);
        const QString accented = direction_ == Qt::RightToLeft ? QStringLiteral("ابجدهوزحطيكلمن")
                                                               : QStringLiteral("àéîõüçñøåëïôûý");
        QString result;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar character = text.at(i);
            if (character == QLatin1Char('%')) { // keeps placeholders
                result += text.mid(i, 2);
                ++i;
            } else if (character.isLetter()) {
                result += accented.at(character.unicode() % accented.size());
                if (i % 2 == 0) result += accented.at(i % accented.size());
            } else {
                result += character;
            }
        }
        return result;
    }

  private:
    Qt::LayoutDirection direction_;
};

} // namespace corvane::test
