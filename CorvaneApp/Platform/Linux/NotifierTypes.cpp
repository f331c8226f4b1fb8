#include "Platform/Linux/NotifierTypes.h"

#include <QDBusMetaType>

namespace corvane {

void registerNotifierTypes() {
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
    qDBusRegisterMetaType<NotifierMenuLayout>();
    qDBusRegisterMetaType<NotifierMenuEntry>();
    qDBusRegisterMetaType<NotifierMenuEntries>();
    qDBusRegisterMetaType<NotifierMenuRemoval>();
    qDBusRegisterMetaType<NotifierMenuRemovals>();
    qDBusRegisterMetaType<NotifierMenuEvent>();
    qDBusRegisterMetaType<NotifierMenuEvents>();
    qDBusRegisterMetaType<QList<int>>();
    // QtDBus looks up argument types by the names that methods use.
    qRegisterMetaType<NotifierMenuEntries>("corvane::NotifierMenuEntries");
    qRegisterMetaType<NotifierMenuRemovals>("corvane::NotifierMenuRemovals");
    qRegisterMetaType<NotifierMenuEvents>("corvane::NotifierMenuEvents");
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties << layout.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties >> layout.children;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuEntry& entry) {
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuEntry& entry) {
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuRemoval& removal) {
    argument.beginStructure();
    argument << removal.id << removal.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuRemoval& removal) {
    argument.beginStructure();
    argument >> removal.id >> removal.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.kind << event.data << event.time;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.kind >> event.data >> event.time;
    argument.endStructure();
    return argument;
}

} // namespace corvane
