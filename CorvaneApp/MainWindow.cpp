#include "MainWindow.h"

#include "AppModel.h"
#include "OnboardingView.h"
#include "Windows.h"

#include <QAction>
#include <QEvent>
#include <QLayout>
#include <QMenuBar>

#include <utility>

namespace corvane {

MainWindow::MainWindow(AppModel& model, links::Opener openLink, const CommandHandlers& handlers)
    : model_(model)
    , view_(new OnboardingView(model, std::move(openLink))) {
    setObjectName(QStringLiteral("main"));
    setWindowRole(QStringLiteral("main"));
    setWindowTitle(tr("Corvane"));
    setContextMenuPolicy(Qt::NoContextMenu);
    setCentralWidget(view_);
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    auto* const commands = new WindowCommands(*this, handlers);
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    if (commands->panel() != nullptr) file->addAction(commands->panel());
    file->addAction(commands->settings());
    file->addSeparator();
    file->addAction(commands->close());
    file->addAction(commands->quit());
    QMenu* const window = menuBar()->addMenu(tr("&Window"));
    window->addAction(commands->mainWindow());
    window->addSeparator();

    connect(view_, &OnboardingView::done, this, &QWidget::close);
}

void MainWindow::present() {
    windows::present(*this);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // The first Tab goes to the first control.
    view_->setFocus();
    model_.refreshConnections();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) model_.refreshConnections();
}

} // namespace corvane
