#pragma once

#include "Style/Tokens.h"

#include <QObject>

namespace corvane {

/// The user's preferences for how programs look. Main thread only; the queries are cheap.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// Light unless the system reports dark.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;

    /// Whether the user asked for reduced motion.
    [[nodiscard]] virtual bool reduceMotion() const = 0;

    /// High where the user asked for it; normal where the system has no such setting.
    [[nodiscard]] virtual Contrast contrast() const { return Contrast::normal; }

    /// The part of the user's text scale that the system does not apply itself by enlarging windows; 1 where
    /// it has no such setting. Any number: callers choose the nearest factor that they support.
    [[nodiscard]] virtual double textScale() const { return 1; }

  Q_SIGNALS:
    /// Emitted when any of the above values may have changed.
    void changed();
};

} // namespace corvane
