#pragma once

#include <QCoreApplication>
#include <QFocusEvent>
#include <QWidget>

/// Where pointer and keyboard are, for views that are drawn and not shown.
namespace corvane::test {

/// Has the control look as it does under the pointer.
inline void hover(QWidget& control) {
    control.setAttribute(Qt::WA_UnderMouse);
}

/// Has the control look as it does once the Tab key has led to it.
inline void focusByKeyboard(QWidget& control) {
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&control, &event);
}

} // namespace corvane::test
