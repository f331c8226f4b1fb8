#include "Platform/Linux/EmbeddedIcon.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XReply.h"
#include "Style/StatusIcon.h"

#include <QApplication>
#include <QMenu>
#include <QWidget>
#include <xcb/xcb.h>

#include <chrono>
#include <optional>

namespace corvane {

namespace {

// How long a tray may take to embed the icon.
constexpr std::chrono::seconds embeddingTime{1};

/// The window that Qt offers for embedding; null when there is none.
QWidget* embeddedWindow() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->inherits("QSystemTrayIconSys")) return window;
    }
    return nullptr;
}

xcb_window_t parent(xcb_window_t window) {
    xcb_connection_t* const x = x11::connection();
    if (x == nullptr) return XCB_WINDOW_NONE;
    const x11::Reply<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
    return reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
}

/// Whether a tray has embedded that window.
bool isEmbedded() {
    const QWidget* const window = embeddedWindow();
    return window != nullptr &&
           parent(static_cast<xcb_window_t>(window->internalWinId())) != x11::rootWindow();
}

} // namespace

EmbeddedIcon::EmbeddedIcon(QMenu* menu) {
    insistence_.setSingleShot(true);
    insistence_.setInterval(embeddingTime);
    connect(&insistence_, &QTimer::timeout, this, &EmbeddedIcon::insist);
    connect(&bar_, &TrayBar::changed, this, &EmbeddedIcon::barChanged);
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // The second press of a double click counts like the first.
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            Q_EMIT pressed(icon_.geometry());
    });
    icon_.setContextMenu(menu);
}

void EmbeddedIcon::show(int waitingCount, const QString& label, const QString& toolTip,
                        ColorScheme otherwise) {
    ColorScheme scheme = otherwise;
    if (isEmbedded()) {
        scheme =
            bar_.scheme(static_cast<xcb_window_t>(embeddedWindow()->internalWinId())).value_or(otherwise);
    }
    icon_.setIcon(statusicon::icon(waitingCount, scheme));
    icon_.setToolTip(toolTip);
    icon_.show();
    // The embedded window has no accessible name of its own.
    if (QWidget* const window = embeddedWindow()) {
        window->setWindowTitle(label);
        window->setAccessibleName(label);
    }
}

// A tray that is just starting may miss the request.
void EmbeddedIcon::insist() {
    // Without a tray there is nothing to ask; the next one announces itself.
    if (x11::selectionOwner(x11::traySelection()) == XCB_WINDOW_NONE) return;
    if (isEmbedded()) {
        Q_EMIT barChanged(); // its colours may be known by now
        return;
    }
    icon_.hide();
    icon_.show();
    Q_EMIT barChanged();
    insistence_.start();
}

} // namespace corvane
