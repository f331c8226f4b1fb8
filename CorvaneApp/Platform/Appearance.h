#pragma once

#include "Style/Tokens.h"

#include <QObject>

namespace corvane {

/// How the user wants programs to look. Main thread only; asking is cheap.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// Light unless the system says dark.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;

    /// Whether the user asked for less movement on the screen.
    [[nodiscard]] virtual bool reduceMotion() const = 0;

    /// High where the user asked for it; normal where the system has no such setting.
    [[nodiscard]] virtual Contrast contrast() const { return Contrast::normal; }

    /// How many times the ordinary size text should have, as far as the system does not enlarge the windows
    /// by itself; 1 where it has no such setting. Any number: who uses it chooses the nearest that it can
    /// draw.
    [[nodiscard]] virtual double textScale() const { return 1; }

  Q_SIGNALS:
    /// One of the answers above may be another one now.
    void changed();
};

} // namespace corvane
