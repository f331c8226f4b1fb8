#pragma once

#include "Support/Date.h"

#include <QLocale>
#include <QString>

/// Moments as users read them, in the present time zone.
namespace corvane::times {

/// The time of day, as short as `locale` has it.
[[nodiscard]] QString shortTime(Date date, const QLocale& locale);

/// What tells that alerts are silenced, such as "Quiet until 14:25".
[[nodiscard]] QString quietUntil(Date date);

} // namespace corvane::times
