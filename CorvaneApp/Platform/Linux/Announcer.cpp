#include "Platform/Linux/Announcer.h"

#include "Platform/PanelContent.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLoggingCategory>

namespace corvane {

namespace {

QAccessibleInterface* notificationInterface(const QString& /*className*/, QObject* object) {
    auto* const content = qobject_cast<PanelContent*>(object);
    return content != nullptr ? new QAccessibleWidget(content, QAccessible::Notification) : nullptr;
}

} // namespace

LinuxAnnouncer::LinuxAnnouncer() {
    QAccessible::installFactory(notificationInterface);
    // Qt 6.8, unlike 6.4, prints a line for each request about an element that no longer exists, and for each
    // kind of event that it does not send. Both are normal with a screen reader: it reads a banner while its
    // view is replaced, and subscribes to every kind of event.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.accessibility.atspi.warning=false"));
}

} // namespace corvane
