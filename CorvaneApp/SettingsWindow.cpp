#include "SettingsWindow.h"

#include "AppModel.h"
#include "Platform/Appearance.h"
#include "Platform/Platform.h"
#include "SettingsView.h"
#include "Windows.h"

#include <QEvent>

namespace corvane {

SettingsWindow::SettingsWindow(AppModel& model, const Services& services, const links::Opener& openLink,
                               const CommandHandlers& handlers)
    : model_(model)
    , view_(new SettingsView(
          model, services.fileBrowser,
          [&appearance = services.appearance] { return appearance.reduceMotion(); }, openLink, this)) {
    setObjectName(QStringLiteral("settings"));
    setWindowRole(QStringLiteral("settings"));
    setWindowTitle(tr("Corvane Settings"));
    windows::tellRole<SettingsWindow>();
    view_->setAccessibleName(windowTitle());
    setFixedSize(view_->size());
    new WindowCommands(*this, handlers);
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
