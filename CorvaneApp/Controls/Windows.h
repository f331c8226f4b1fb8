#pragma once

#include <QAccessibleWidget>

namespace corvane::windows {

/// Shows `window`, also from minimised and from another workspace, and asks the system to bring it to the
/// front with the keyboard.
void present(QWidget& window);

/// Has assistive technology call windows of this class so; a plain widget is a mere part of one to it. To be
/// called before a window of the class is shown.
template <typename Window>
void tellRole() {
    QAccessible::installFactory([](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
        auto* const window = qobject_cast<Window*>(object);
        return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
    });
}

} // namespace corvane::windows
