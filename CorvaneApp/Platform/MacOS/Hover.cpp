#include "Platform/MacOS/Hover.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace corvane {

void Hover::move(QWindow& window, QPointF local, QPointF global) {
    if (!std::exchange(isInside_, true)) {
        // Widgets track the mouse only after this.
        QEnterEvent enter(local, local, global);
        QCoreApplication::sendEvent(&window, &enter);
    }
    QMouseEvent move(QEvent::MouseMove, local, local, global, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &move);
}

void Hover::leave(QWindow& window) {
    if (!std::exchange(isInside_, false)) return;
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window, &leave);
}

} // namespace corvane
