#include "Platform/Linux/StatusItem.h"

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

/// Whether a tray has taken that window into one of its own.
bool isEmbedded() {
    const QWidget* const window = embeddedWindow();
    return window != nullptr &&
           parent(static_cast<xcb_window_t>(window->internalWinId())) != x11::rootWindow();
}

} // namespace

LinuxStatusItem::LinuxStatusItem(Appearance& appearance)
    : appearance_(appearance) {
    connect(&appearance_, &Appearance::changed, this, &LinuxStatusItem::update);
    insistence_.setSingleShot(true);
    insistence_.setInterval(embeddingTime);
    connect(&insistence_, &QTimer::timeout, this, &LinuxStatusItem::insist);
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::show(int waitingCount, const QString& label, const QString& toolTip) {
    waitingCount_ = waitingCount;
    label_ = label;
    toolTip_ = toolTip;
    if (!hosts_) {
        hosts_ = std::make_unique<TrayHosts>();
        connect(hosts_.get(), &TrayHosts::changed, this, &LinuxStatusItem::settle);
        settle();
    }
    update();
}

void LinuxStatusItem::setMenu(QMenu* menu) {
    menu_ = menu;
    if (icon_) icon_->setContextMenu(menu);
}

bool LinuxStatusItem::isAvailable() const {
    if (!hosts_) return false;
    if (!icon_) return hosts_->hasNotifierHost() || hosts_->hasEmbeddingHost();
    return isNotifier_ ? hosts_->hasNotifierHost() : hosts_->hasEmbeddingHost();
}

QRect LinuxStatusItem::place() const {
    return icon_ && isAvailable() ? icon_->geometry() : QRect();
}

void LinuxStatusItem::settle() {
    if (!hosts_->isNotifierKnown()) return;
    if (!icon_ && isAvailable()) makeIcon();
    if (icon_ && !isNotifier_) insistence_.start();
    Q_EMIT availabilityChanged();
}

void LinuxStatusItem::makeIcon() {
    isNotifier_ = hosts_->hasNotifierHost();
    if (!isNotifier_) {
        bar_ = std::make_unique<TrayBar>();
        connect(bar_.get(), &TrayBar::changed, this, &LinuxStatusItem::update);
    }
    icon_ = std::make_unique<QSystemTrayIcon>();
    connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // The second press of a double click counts like the first.
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            Q_EMIT pressed(icon_->geometry());
    });
    icon_->setContextMenu(menu_);
    update();
    icon_->show();
    update();
}

// A tray that is just starting may miss the request.
void LinuxStatusItem::insist() {
    if (!hosts_->hasEmbeddingHost()) return;
    if (isEmbedded()) {
        update(); // the bar can be seen by now
        return;
    }
    icon_->hide();
    icon_->show();
    update();
    insistence_.start();
}

ColorScheme LinuxStatusItem::barScheme() {
    if (bar_ && isEmbedded()) {
        const auto window = static_cast<xcb_window_t>(embeddedWindow()->internalWinId());
        if (const std::optional<ColorScheme> scheme = bar_->scheme(window)) return *scheme;
    }
    return statusicon::barScheme(qgetenv("XDG_CURRENT_DESKTOP").toStdString(), appearance_.colorScheme());
}

void LinuxStatusItem::update() {
    if (!icon_) return;
    icon_->setIcon(statusicon::icon(waitingCount_, barScheme()));
    icon_->setToolTip(toolTip_);
    // The embedded window has no accessible name of its own.
    if (QWidget* const window = embeddedWindow()) {
        window->setWindowTitle(label_);
        window->setAccessibleName(label_);
    }
}

} // namespace corvane
