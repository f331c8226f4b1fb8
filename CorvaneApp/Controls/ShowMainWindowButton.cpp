#include "Controls/ShowMainWindowButton.h"

#include <utility>

namespace corvane {

ShowMainWindowButton::ShowMainWindowButton(std::function<void()> openWindow, QObject* parent)
    : QAction(tr("Corvane"), parent) {
    setShortcut(Qt::CTRL | Qt::Key_0);
    setMenuRole(QAction::NoRole);
    connect(this, &QAction::triggered, this, std::move(openWindow));
}

} // namespace corvane
