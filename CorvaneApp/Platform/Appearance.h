#pragma once

#include "Tokens.h"

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

  Q_SIGNALS:
    /// One of the answers above may be another one now.
    void changed();
};

} // namespace corvane
