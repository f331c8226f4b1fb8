#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace corvane {

// The structures that StatusNotifierItems and their menus exchange with hosts on the session bus.

/// A picture; `pixels` are ARGB of 32 bits each, in network byte order.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using NotifierPixmaps = QList<NotifierPixmap>;

struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps icon;
    QString title;
    QString text; // with markup
};

/// A menu entry with its own entries, each of which is a variant of this same type.
struct NotifierMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// The properties of one entry.
struct NotifierMenuEntry {
    int id = 0;
    QVariantMap properties;

    bool operator==(const NotifierMenuEntry&) const = default;
};
using NotifierMenuEntries = QList<NotifierMenuEntry>;

/// The names of properties that an entry no longer has.
struct NotifierMenuRemoval {
    int id = 0;
    QStringList names;
};
using NotifierMenuRemovals = QList<NotifierMenuRemoval>;

struct NotifierMenuEvent {
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint time = 0;
};
using NotifierMenuEvents = QList<NotifierMenuEvent>;

/// To be called before any of them is sent or received.
void registerNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuEntry& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuEntry& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuRemoval& removal);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuRemoval& removal);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierMenuEvent& event);

} // namespace corvane

Q_DECLARE_METATYPE(corvane::NotifierPixmap)
Q_DECLARE_METATYPE(corvane::NotifierToolTip)
Q_DECLARE_METATYPE(corvane::NotifierMenuLayout)
Q_DECLARE_METATYPE(corvane::NotifierMenuEntry)
Q_DECLARE_METATYPE(corvane::NotifierMenuRemoval)
Q_DECLARE_METATYPE(corvane::NotifierMenuEvent)
