#pragma once

#include <QPointF>

class QWindow;

namespace corvane {

/// Sends mouse movements to a Qt window where the native view does not. For one window; main thread only.
class Hover {
  public:
    /// Reports the mouse at `local` in the window, `global` on the desktop, with no button down.
    void move(QWindow& window, QPointF local, QPointF global);

    /// Reports that the mouse has left the window. Does nothing unless it was inside.
    void leave(QWindow& window);

  private:
    bool isInside_ = false;
};

} // namespace corvane
