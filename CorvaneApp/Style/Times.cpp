#include "Style/Times.h"

#include <QCoreApplication>
#include <QDateTime>

namespace corvane::times {

QString shortTime(Date date, const QLocale& locale) {
    const QTime time = QDateTime::fromSecsSinceEpoch(date.seconds()).time();
    // The C locale's short format has seconds.
    if (locale.language() == QLocale::C) return time.toString(QStringLiteral("HH:mm"));
    return locale.toString(time, QLocale::ShortFormat);
}

QString quietUntil(Date date) {
    return QCoreApplication::translate("corvane::times", "Quiet until %1").arg(shortTime(date, QLocale()));
}

} // namespace corvane::times
