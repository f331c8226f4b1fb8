#include "MainWindow.h"

#include "Model/AppModel.h"
#include "OnboardingView.h"
#include "Platform/Activation.h"

#include <QAction>
#include <QEvent>
#include <QLayout>
#include <QMenuBar>

#include <utility>

namespace corvane {

MainWindow::MainWindow(AppModel& model, Activation& activation, links::Opener openLink,
                       const CommandHandlers& handlers, MenuBars menuBars)
    : model_(model)
    , activation_(activation)
    , openLink_(std::move(openLink))
    , commands_(new WindowCommands(*this, handlers, [this] { return menuPlace(); })) {
    setObjectName(QStringLiteral("main"));
    setWindowRole(QStringLiteral("main"));
    setWindowTitle(tr("Corvane"));
    setContextMenuPolicy(Qt::NoContextMenu);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    rebuild();
    if (menuBars == MenuBars::ofWindows) file_ = addMenus(*menuBar(), *commands_);
}

QMenu* MainWindow::addMenus(QMenuBar& bar, const WindowCommands& commands) {
    QMenu* const file = bar.addMenu(tr("&File"));
    file->addAction(commands.panel());
    file->addAction(commands.settings());
    file->addSeparator();
    file->addAction(commands.close());
    file->addAction(commands.quit());
    QMenu* const window = bar.addMenu(tr("&Window"));
    window->addAction(commands.mainWindow());
    window->addSeparator();
    return file;
}

void MainWindow::rebuild() {
    view_ = new OnboardingView(model_, openLink_);
    view_->setTray(hasTray_);
    // The view has the focus until the user moves it to a control.
    view_->setAccessibleName(windowTitle());
    connect(view_, &OnboardingView::done, this, &QWidget::close);
    setCentralWidget(view_); // the old one is deleted when the event loop runs next
}

void MainWindow::setTray(bool isThere) {
    hasTray_ = isThere;
    view_->setTray(isThere);
}

QRect MainWindow::menuPlace() const {
    // menuBar() would create a bar where there is none.
    const QMenuBar* const bar = file_ == nullptr ? nullptr : menuBar();
    const QRect title =
        bar != nullptr && bar->isVisible() ? bar->actionGeometry(file_->menuAction()) : QRect();
    if (title.isEmpty()) return {mapToGlobal(QPoint()), QSize(width(), 1)};
    return {bar->mapToGlobal(title.topLeft()), title.size()};
}

void MainWindow::present() {
    activation_.present(*this);
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
