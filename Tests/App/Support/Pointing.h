#pragma once

#include <QCoreApplication>
#include <QFocusEvent>
#include <QWidget>

/// Simulates pointer and focus for views that are drawn but not shown.
namespace corvane::test {

/// Makes the control look as it does under the pointer.
inline void hover(QWidget& control) {
    control.setAttribute(Qt::WA_UnderMouse);
}

/// Makes the control look as it does when it was reached by the Tab key.
inline void focusByKeyboard(QWidget& control) {
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&control, &event);
}

} // namespace corvane::test
