#pragma once

#include <QObject>
#include <QRect>

#include <optional>

namespace corvane {

/// The screens and their work areas. Main thread only.
class Screens : public QObject {
    Q_OBJECT

  public:
    /// The work area of the main screen (free of bars and docks), in device-independent pixels with y growing
    /// downwards; none without a screen. The main screen is the one that the user works on: the one with the
    /// focused window if the system reports it, else the one with the pointer, else the primary.
    [[nodiscard]] virtual std::optional<QRect> mainVisibleFrame() const = 0;
    /// The work area of the screen at `place`, in the same coordinates; of the primary screen if `place` is
    /// on none.
    [[nodiscard]] virtual std::optional<QRect> visibleFrameAt(QPoint place) const = 0;

  Q_SIGNALS:
    /// Screens were added, removed or moved, or changed their size, scale or work area.
    void changed();
};

} // namespace corvane
