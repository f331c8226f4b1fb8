#pragma once

#include <QApplication>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

#include <string>

namespace corvane::test {

/// What the user reads when the pointer rests on the widget; empty where nothing shows.
inline std::string toolTip(QWidget& widget) {
    // To hide one takes time.
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
