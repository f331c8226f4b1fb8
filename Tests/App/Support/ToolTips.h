#pragma once

#include <QApplication>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

#include <string>

namespace corvane::test {

/// The tooltip that is shown when the pointer rests on the widget; empty if none is.
inline std::string toolTip(QWidget& widget) {
    // Hiding one takes time.
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->inherits("QTipLabel")) delete window;
    }
    const QPoint middle = widget.rect().center();
    QHelpEvent event(QEvent::ToolTip, middle, widget.mapToGlobal(middle));
    QCoreApplication::sendEvent(&widget, &event);
    if (!QToolTip::isVisible()) return {};
    QTextDocument document;
    document.setHtml(QToolTip::text());
    return document.toPlainText().toStdString();
}

} // namespace corvane::test
