#include "Desktop/Tray/NotifierHost.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <stdexcept>

namespace corvane::test {

namespace {

/// Each host has a connection, and so a place on the bus, of its own.
QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("notifier-host-%1").arg(++count);
}

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

} // namespace

NotifierHost::NotifierHost(const std::string& bus)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(bus), nextConnectionName())) {
    if (!bus_.isConnected()) throw std::runtime_error("the session bus cannot be reached");
    new WatcherAdaptor(*this);
    bus_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this);
    leaving_.setConnection(bus_);
    leaving_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&leaving_, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& service) {
        if (items_.removeAll(service) > 0) Q_EMIT itemUnregistered(service);
    });
}

NotifierHost::~NotifierHost() {
    QDBusConnection::disconnectFromBus(bus_.name());
}

void NotifierHost::start() {
    const auto reply =
        bus_.interface()->registerService(watcherName, QDBusConnectionInterface::ReplaceExistingService,
                                          QDBusConnectionInterface::AllowReplacement);
    if (reply != QDBusConnectionInterface::ServiceRegistered)
        throw std::runtime_error("another watcher is there");
}

void NotifierHost::stop() {
    bus_.unregisterService(watcherName);
    items_.clear();
}

void NotifierHost::drop() {
    Q_EMIT itemUnregistered(items_.takeFirst());
}

void NotifierHost::setHasHost(bool hasHost) {
    hasHost_ = hasHost;
    if (hasHost) Q_EMIT hostRegistered();
}

void NotifierHost::add(const QString& service) {
    items_.append(service);
    leaving_.addWatchedService(service);
    Q_EMIT itemRegistered(service);
}

QVariant NotifierHost::property(const char* name) const {
    if (items_.isEmpty()) return {};
    QDBusMessage call = QDBusMessage::createMethodCall(
        items_.first(), itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << itemInterface << QString::fromLatin1(name);
    const QDBusReply<QDBusVariant> reply = bus_.call(call);
    return reply.isValid() ? reply.value().variant() : QVariant();
}

QStringList NotifierHost::toolTipLines() const {
    const QVariant value = property("ToolTip");
    if (!value.isValid()) return {QString(), QString()};
    // The icon's name and pixmaps, then the title and the text.
    const auto structure = value.value<QDBusArgument>();
    structure.beginStructure();
    structure.asVariant();
    structure.asVariant();
    const QString title = structure.asVariant().toString();
    const QString text = structure.asVariant().toString();
    structure.endStructure();
    return {title, text};
}

std::string NotifierHost::toolTip() const {
    return toolTipLines().first().toStdString();
}

std::string NotifierHost::toolTipText() const {
    return toolTipLines().last().toStdString();
}

std::vector<NotifierHost::Picture> NotifierHost::pictures(const char* name) const {
    std::vector<Picture> result;
    const QVariant value = property(name);
    if (!value.isValid()) return result;
    const auto array = value.value<QDBusArgument>();
    array.beginArray();
    while (!array.atEnd()) {
        Picture picture;
        int height = 0;
        array.beginStructure();
        array >> picture.side >> height >> picture.pixels;
        array.endStructure();
        if (height == picture.side) result.push_back(picture);
    }
    array.endArray();
    return result;
}

void NotifierHost::call(const QString& method, int x, int y) {
    if (items_.isEmpty()) throw std::runtime_error("there is no item to click");
    QDBusMessage call = QDBusMessage::createMethodCall(items_.first(), itemPath, itemInterface, method);
    call << x << y;
    bus_.call(call);
}

void NotifierHost::activate(int x, int y) {
    call(QStringLiteral("Activate"), x, y);
}

void NotifierHost::requestMenu(int x, int y) {
    call(QStringLiteral("ContextMenu"), x, y);
}

std::vector<NotifierHost::Entry> NotifierHost::menu() const {
    if (items_.isEmpty()) return {};
    const QString path = property("Menu").value<QDBusObjectPath>().path();
    QDBusMessage call =
        QDBusMessage::createMethodCall(items_.first(), path, menuInterface, QStringLiteral("GetLayout"));
    call << 0 << -1 << QStringList();
    const QDBusMessage reply = bus_.call(call);
    std::vector<Entry> entries;
    if (reply.arguments().size() < 2) return entries;
    // (number, properties, children), where each child is a variant of the same.
    const auto layout = reply.arguments().at(1).value<QDBusArgument>();
    int root = 0;
    QVariantMap ignored;
    QList<QVariant> children;
    layout.beginStructure();
    layout >> root >> ignored;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        children.append(child.variant());
    }
    layout.endArray();
    layout.endStructure();
    for (const QVariant& child : children) {
        const auto structure = child.value<QDBusArgument>();
        Entry entry;
        QVariantMap properties;
        structure.beginStructure();
        structure >> entry.id >> properties;
        structure.endStructure();
        if (!properties.value(QStringLiteral("visible"), true).toBool()) continue;
        entry.label = properties.value(QStringLiteral("type")).toString() == QStringLiteral("separator")
                          ? "-"
                          : properties.value(QStringLiteral("label")).toString().toStdString();
        entries.push_back(entry);
    }
    return entries;
}

bool NotifierHost::choose(const std::string& label) {
    const QString path = property("Menu").value<QDBusObjectPath>().path();
    for (const Entry& entry : menu()) {
        if (entry.label != label) continue;
        QDBusMessage call =
            QDBusMessage::createMethodCall(items_.first(), path, menuInterface, QStringLiteral("Event"));
        call << entry.id << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(0)) << 0U;
        bus_.call(call, QDBus::NoBlock);
        return true;
    }
    return false;
}

void NotifierHost::openMenu() const {
    const QString path = property("Menu").value<QDBusObjectPath>().path();
    QDBusMessage call =
        QDBusMessage::createMethodCall(items_.first(), path, menuInterface, QStringLiteral("AboutToShow"));
    call << 0;
    bus_.call(call);
}

int NotifierHost::broadcasts() {
    if (counted_ != items_.first()) {
        counted_ = items_.first();
        broadcasts_ = 0;
        // Per interface, since an empty one is not allowed.
        for (const QString& interface : {menuInterface, itemInterface})
            bus_.connect(counted_, QString(), interface, QString(), this, SLOT(countBroadcast(QDBusMessage)));
    }
    return broadcasts_;
}

void NotifierHost::countBroadcast(const QDBusMessage& /*message*/) {
    ++broadcasts_;
}

WatcherAdaptor::WatcherAdaptor(NotifierHost& host)
    : QDBusAbstractAdaptor(&host)
    , host_(host) {
    connect(&host, &NotifierHost::itemRegistered, this, &WatcherAdaptor::StatusNotifierItemRegistered);
    connect(&host, &NotifierHost::itemUnregistered, this, &WatcherAdaptor::StatusNotifierItemUnregistered);
    connect(&host, &NotifierHost::hostRegistered, this, &WatcherAdaptor::StatusNotifierHostRegistered);
}

} // namespace corvane::test
