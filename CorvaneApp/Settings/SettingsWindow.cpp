#include "Settings/SettingsWindow.h"

#include "Controls/WindowRole.h"
#include "Model/AppModel.h"
#include "Platform/Activation.h"
#include "Settings/SettingsPages.h"
#include "Settings/SettingsTabBar.h"

#include <QEvent>

#include <utility>

namespace corvane {

SettingsWindow::SettingsWindow(AppModel& model, Activation& activation, MakePages makePages,
                               const CommandHandlers& handlers)
    : model_(model)
    , activation_(activation)
    , makePages_(std::move(makePages)) {
    installWindowRole<SettingsWindow>();
    setObjectName(QStringLiteral("settings"));
    setWindowRole(QStringLiteral("settings"));
    setWindowTitle(tr("Corvane Settings"));
    rebuild();
    new WindowCommands(*this, handlers);
}

void SettingsWindow::rebuild() {
    SettingsPages* const old = view_;
    view_ = makePages_(this);
    if (old != nullptr) {
        view_->tabs().setCurrentIndex(old->tabs().currentIndex());
        // Its button may be the one being pressed.
        old->hide();
        old->deleteLater();
    }
    view_->setAccessibleName(windowTitle());
    setFixedSize(view_->size());
    view_->setVisible(true);
    if (old != nullptr) view_->setFocus();
}

void SettingsWindow::present() {
    activation_.present(*this);
}

void SettingsWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The first Tab goes to the first control.
    view_->setFocus();
    model_.refreshConnections();
}

void SettingsWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) model_.refreshConnections();
}

} // namespace corvane
