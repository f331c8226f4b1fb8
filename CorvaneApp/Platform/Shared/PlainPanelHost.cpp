#include "Platform/Shared/PlainPanelHost.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace corvane {

PlainPanelHost::PlainPanelHost(QWidget& window, Activation& activation)
    : window_(window)
    , activation_(activation) {
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PanelHost::keyboardChanged);
}

void PlainPanelHost::setGeometry(const QRect& geometry, const QPainterPath& /*outline*/) {
    window_.move(geometry.topLeft());
}

void PlainPanelHost::present() {
    activation_.present(window_);
}

bool PlainPanelHost::hasKeyboard() const {
    const QWindow* const focused = QGuiApplication::focusWindow();
    return focused != nullptr && focused == window_.windowHandle();
}

} // namespace corvane
