#include "Platform/Linux/PopupPresses.h"

#include "Platform/Linux/StackingGuard.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace corvane {

PopupPresses::PopupPresses(const StackingGuard& guard)
    : guard_(guard) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool PopupPresses::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress || !object->isWidgetType()) return false;
    const auto* const popup = static_cast<QWidget*>(object);
    const auto* const press = static_cast<QMouseEvent*>(event);
    const QPoint place = press->globalPosition().toPoint();
    if (popup->windowType() != Qt::Popup || popup->geometry().contains(place)) return false;
    // This also finds another menu, such as the parent of a submenu.
    const QWidget* const below = QApplication::widgetAt(place);
    QWidget* const window = below != nullptr ? below->window() : nullptr;
    if (window == nullptr || std::ranges::find(guard_.windows(), window) == guard_.windows().end())
        return false;
    // Queued until the menu is closed. The release reaches the panel directly.
    auto* const copy =
        new QMouseEvent(QEvent::MouseButtonPress, window->mapFromGlobal(press->globalPosition()),
                        press->globalPosition(), press->button(), press->buttons(), press->modifiers());
    QCoreApplication::postEvent(window->windowHandle(), copy);
    return false;
}

} // namespace corvane
