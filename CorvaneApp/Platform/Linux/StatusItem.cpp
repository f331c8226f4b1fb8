#include "Platform/Linux/StatusItem.h"

#include "StatusIcon.h"

#include <QApplication>
#include <QMenu>
#include <QWidget>

namespace corvane {

LinuxStatusItem::LinuxStatusItem(Appearance& appearance)
    : appearance_(appearance) {
    connect(&appearance_, &Appearance::changed, this, &LinuxStatusItem::update);
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::show(int waitingCount, const QString& label) {
    waitingCount_ = waitingCount;
    label_ = label;
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

void LinuxStatusItem::settle() {
    if (!hosts_->isNotifierKnown()) return;
    if (!icon_ && isAvailable()) makeIcon();
    Q_EMIT availabilityChanged();
}

void LinuxStatusItem::makeIcon() {
    isNotifier_ = hosts_->hasNotifierHost();
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

void LinuxStatusItem::update() {
    if (!icon_) return;
    const ColorScheme bar =
        statusicon::barScheme(qgetenv("XDG_CURRENT_DESKTOP").toStdString(), appearance_.colorScheme());
    icon_->setIcon(statusicon::icon(waitingCount_, bar));
    icon_->setToolTip(label_);
    // The window that is embedded has no name of its own.
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->inherits("QSystemTrayIconSys")) continue;
        window->setWindowTitle(label_);
        window->setAccessibleName(label_);
    }
}

} // namespace corvane
