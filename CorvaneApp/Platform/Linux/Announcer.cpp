#include "Platform/Linux/Announcer.h"

#include "Platform/PanelContent.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace corvane {

namespace {

QAccessibleInterface* notificationInterface(const QString& /*className*/, QObject* object) {
    auto* const content = qobject_cast<PanelContent*>(object);
    return content != nullptr ? new QAccessibleWidget(content, QAccessible::Notification) : nullptr;
}

} // namespace

LinuxAnnouncer::LinuxAnnouncer() {
    QAccessible::installFactory(notificationInterface);
}

void LinuxAnnouncer::announce(const QString& text, QWidget& banner) {
    if (banner.accessibleName() != text) banner.setAccessibleName(text);
}

} // namespace corvane
