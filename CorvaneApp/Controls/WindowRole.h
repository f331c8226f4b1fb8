#pragma once

#include <QAccessibleWidget>

namespace corvane {

/// Gives widgets of the class `Window` the accessible role of a window; a plain widget has that of a client
/// area, a mere part of a window. Call this before setting anything on such a widget: since Qt 6.8, setting
/// its title already fixes the role.
template <typename Window>
void installWindowRole() {
    QAccessible::installFactory([](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
        auto* const window = qobject_cast<Window*>(object);
        return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
    });
}

} // namespace corvane
