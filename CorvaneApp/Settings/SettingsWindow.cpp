#include "Settings/SettingsWindow.h"

#include "Controls/Windows.h"
#include "Model/AppModel.h"
#include "Platform/Appearance.h"
#include "Platform/Platform.h"
#include "SettingsView.h"

#include <QEvent>

#include <utility>

namespace corvane {

SettingsWindow::SettingsWindow(AppModel& model, const Services& services, links::Opener openLink,
                               const CommandHandlers& handlers)
    : model_(model)
    , services_(services)
    , openLink_(std::move(openLink)) {
    setObjectName(QStringLiteral("settings"));
    setWindowRole(QStringLiteral("settings"));
    setWindowTitle(tr("Corvane Settings"));
    windows::tellRole<SettingsWindow>();
    rebuild();
    new WindowCommands(*this, handlers);
}

void SettingsWindow::rebuild() {
    SettingsView* const old = view_;
    const ReduceMotion reduceMotion = [&appearance = services_.appearance] {
        return appearance.reduceMotion();
    };
    view_ = new SettingsView(model_, services_.fileBrowser, reduceMotion, openLink_, this);
    if (old != nullptr) {
        view_->tabs().setCurrentIndex(old->tabs().currentIndex());
        // It may be the one whose button is being pressed.
        old->hide();
        old->deleteLater();
    }
    view_->setAccessibleName(windowTitle());
    setFixedSize(view_->size());
    view_->setVisible(true);
    if (old != nullptr) view_->setFocus();
}

void SettingsWindow::present() {
    windows::present(*this);
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
