#include "Platform/Linux/Activation.h"

#include "Platform/Linux/X11.h"
#include "Platform/Screens.h"
#include "Style/ApplicationIcon.h"

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <optional>

namespace corvane {

namespace {

/// Centres a window that was never shown in `available`, the work area of the user's screen. Left to
/// themselves, some window managers open it in a corner, and others partly below the screen.
void centre(QWidget& window, const QRect& available) {
    window.ensurePolished();
    window.adjustSize();
    QRect place = QStyle::alignedRect(window.layoutDirection(), Qt::AlignCenter, window.size(), available);
    place.moveTop(std::max(place.top(), available.top()));
    // Without its frame, whose size is known only afterwards.
    window.setGeometry(place);
}

} // namespace

void LinuxActivation::present(QWidget& window) {
    const StartupToken startup = std::exchange(startup_, {});
    // Needed if the program is not installed, so that desktops find neither its desktop entry nor its icon.
    // Not set earlier: after a start at login no window may be shown for hours, and drawing the icon takes
    // time and 256 KiB.
    if (QGuiApplication::windowIcon().isNull()) QGuiApplication::setWindowIcon(applicationicon::icon());
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    const WId id = window.internalWinId();
    if (id != 0)
        x11::moveToCurrentWorkspace(static_cast<xcb_window_t>(id));
    else if (const std::optional<QRect> available = screens_.visibleFrameAt(QCursor::pos()))
        centre(window, *available);
    window.show();
    if (x11::hasActiveWindowHint()) {
        const auto native = static_cast<xcb_window_t>(window.internalWinId());
        if (!startup.startupId.empty()) x11::finishStartup(native, startup.startupId);
        x11::requestActivation(native);
        x11::flush();
        return;
    }
    // Qt's Wayland client reads the token from there, and removes it, when it requests activation.
    if (!startup.activationToken.empty())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(startup.activationToken));
    window.raise();
    window.activateWindow();
}

} // namespace corvane
