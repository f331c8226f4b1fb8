#pragma once

#include "Support/Date.h"

#include <QLocale>
#include <QString>

/// Times as users read them, in the current time zone.
namespace corvane::times {

/// The time of day in the short format of `locale`.
[[nodiscard]] QString shortTime(Date date, const QLocale& locale);

/// The note that alerts are silenced, such as "Quiet until 14:25".
[[nodiscard]] QString quietUntil(Date date);

} // namespace corvane::times
