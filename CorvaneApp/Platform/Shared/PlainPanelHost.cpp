#include "Platform/Shared/PlainPanelHost.h"

#include "Controls/Windows.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace corvane {

PlainPanelHost::PlainPanelHost(QWidget& window)
    : window_(window) {
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PanelHost::keyboardChanged);
}

void PlainPanelHost::setGeometry(const QRect& geometry, const QPainterPath& /*outline*/) {
    window_.move(geometry.topLeft());
}

void PlainPanelHost::present() {
    windows::present(window_);
}

bool PlainPanelHost::hasKeyboard() const {
    const QWindow* const focused = QGuiApplication::focusWindow();
    return focused != nullptr && focused == window_.windowHandle();
}

} // namespace corvane
